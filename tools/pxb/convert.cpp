// Calls of the library, and what to say where it refuses.
#include "convert.h"

#include <array>
#include <string>
#include <vector>

#include "error.h"

namespace pxb::tool {
namespace {

std::int32_t ResultOf(PixelFormat from, PixelFormat to) {
    const Size smallest = {2, 2};
    Picture source("", from, smallest), target("", to, smallest);
    return PxbColorSpaceConv(&target.image(), &source.image());
}

// The formats on the shortest way there, preferring those that lose least.
std::vector<PixelFormat> Between(PixelFormat from, PixelFormat to) {
    static constexpr std::array kBetween = {PXB_YUY2, PXB_RGB32, PXB_RGB24, PXB_I420, PXB_YV12};
    if (Converts(from, to)) return {};
    for (const PixelFormat between : kBetween)
        if (Converts(from, between) && Converts(between, to)) return {between};
    for (const PixelFormat first : kBetween)
        for (const PixelFormat second : kBetween)
            if (Converts(from, first) && Converts(first, second) && Converts(second, to))
                return {first, second};
    return {};
}

std::string ConvertFirst(const std::vector<PixelFormat>& formats) {
    std::string names;
    for (const PixelFormat format : formats)
        names.append(names.empty() ? "" : ", then to ").append(FormatName(format));
    return names.empty() ? "" : "; convert to " + names + " first";
}

}  // namespace

std::string ResultName(std::int32_t result) {
    static constexpr std::string_view kNames[] = {"PXB_SUCCESS", "PXB_UNSUPPORTED",
                                                  "PXB_BAD_ARGUMENT", "PXB_FAILURE"};
    return std::to_string(result) + " (" + std::string(kNames[result]) + ")";
}

bool Converts(PixelFormat from, PixelFormat to) {
    return ResultOf(from, to) == PXB_SUCCESS;
}

std::string Advice(PixelFormat from, PixelFormat to) {
    if (to == PXB_RGB8) return "; `pxb channel` makes grey pictures";
    return ConvertFirst(Between(from, to));
}

Picture Convert(std::string_view file, const Picture& picture, PixelFormat to, bool unpadded) {
    // Unpadded, some of it stays as it is.
    const auto contents = unpadded ? Picture::Contents::kBlack : Picture::Contents::kAny;
    Picture target(file, to, picture.size(), contents);
    ImageBuffer dst = target.image(), src = picture.image();
    if (unpadded) dst.width = src.width = picture.size().width;
    const std::int32_t result = PxbColorSpaceConv(&dst, &src);
    if (result == PXB_SUCCESS) return target;
    const PixelFormat from = picture.format();
    throw Error(file, "conversion",
                std::string(FormatName(from)) + " to " + std::string(FormatName(to)),
                "the library answers " + ResultName(result) + Advice(from, to));
}

Picture GetChannel(std::string_view file, const Picture& picture, int channel) {
    const auto refuse = [&](const std::string& reason) {
        throw Error(file, "channel",
                    std::to_string(channel) + " of " + std::string(FormatName(picture.format())),
                    reason);
    };
    // PxbChannelGet answers success for a luma that it could not make.
    if (channel == 5 && !Converts(picture.format(), PXB_YV12))
        refuse("this format has no conversion to YV12, where luma comes from" +
               Advice(picture.format(), PXB_YV12));
    Picture target(file, PXB_RGB8, picture.size(), Picture::Contents::kAny);
    const std::int32_t result = PxbChannelGet(&target.image(), &picture.image(), channel);
    if (result == PXB_SUCCESS) return target;
    std::vector<PixelFormat> way = Between(picture.format(), PXB_RGB32);
    way.push_back(PXB_RGB32);  // which has all channels
    refuse("the library answers " + ResultName(result) + ConvertFirst(way));
    return target;
}

void Blend(std::string_view file, Picture& picture, const Picture& overlay, const Picture* mask,
           Point at, const Rect& part) {
    const Rect to = {at.x, at.y, at.x + part.right - part.left, at.y + part.bottom - part.top};
    const std::int32_t result = PxbAlphaBlend(&picture.image(), &overlay.image(),
                                              mask ? &mask->image() : nullptr, &to, &part);
    if (result != PXB_SUCCESS)
        throw Error(file, "blending", FormatName(picture.format()),
                    "the library answers " + ResultName(result));
    RepeatEdges(picture);
}

}  // namespace pxb::tool
