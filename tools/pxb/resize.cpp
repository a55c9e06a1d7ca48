#include "resize.h"

#include <array>
#include <cstring>

#include "convert.h"
#include "error.h"
#include "geometry.h"

namespace pxb::tool {
namespace {

constexpr std::array<std::string_view, 7> kModes = {"nearest",    "bilinear",   "faded", "half",
                                                    "half-faded", "bilinear-5", "shrink"};

std::string Describe(std::int32_t mode) {
    return std::to_string(mode) + " (" + std::string(kModes[static_cast<std::size_t>(mode)]) + ")";
}

// An edge that is the picture's own takes the padding with it which completes pairs of pixels.
Rect Completed(Rect rect, const Picture& picture) {
    const ImageBuffer& image = picture.image();
    const bool planar = image.format == PXB_YV12 || image.format == PXB_I420;
    const bool paired = planar || image.format == PXB_YUY2;
    if (paired && rect.right == picture.size().width) rect.right = image.width;
    if (planar && rect.bottom == picture.size().height) rect.bottom = image.height;
    return rect;
}

Rect Part(const std::optional<Rect>& rect, const Picture& picture) {
    const Rect whole = {0, 0, picture.size().width, picture.size().height};
    return Completed(rect.value_or(whole), picture);
}

Size SizeOf(const std::optional<Rect>& rect, Size whole) {
    return rect ? Size{rect->right - rect->left, rect->bottom - rect->top} : whole;
}

std::int32_t Scale(const Picture& target, const Picture& picture, const Scaling& scaling) {
    const Rect to = Part(scaling.to, target), from = Part(scaling.from, picture);
    ImageBuffer image = target.image();
    return PxbResizeEx(&image, &picture.image(), &scaling.mode, &to, &from);
}

// Whether it leaves pictures of two different colours as they were.
bool WritesNothing(std::string_view file, const Picture& picture, const Scaling& scaling) {
    for (const std::uint32_t color : {0x000000u, 0xFFFFFFu}) {
        Picture before(file, picture.format(), scaling.size);
        Picture after(file, picture.format(), scaling.size);
        PxbFillColor(&before.image(), color);
        PxbFillColor(&after.image(), color);
        Scale(after, picture, scaling);
        for (const Plane& plane : after.Planes())
            for (std::int64_t y = 0; y < plane.rows; ++y)
                if (std::memcmp(before.Row(plane, y), after.Row(plane, y),
                                static_cast<std::size_t>(plane.row_bytes)) != 0)
                    return false;
    }
    return true;
}

}  // namespace

std::int32_t ParseMode(std::string_view option, std::string_view text) {
    for (std::size_t mode = 0; mode < kModes.size(); ++mode)
        if (text == kModes[mode] || text == std::to_string(mode))
            return static_cast<std::int32_t>(mode);
    throw Error("", option, text, "is not one of " + ModeNames());
}

std::string ModeNames() {
    std::string names;
    for (std::size_t mode = 0; mode < kModes.size(); ++mode)
        names.append(mode ? ", " : "").append(std::to_string(mode) + " ").append(kModes[mode]);
    return names;
}

Picture Resize(std::string_view file, const Picture& picture, const Scaling& scaling) {
    if (scaling.from) CheckRect(file, "--from-rect", *scaling.from, picture.size());
    Picture target(file, picture.format(), scaling.size);
    const std::int32_t result = Scale(target, picture, scaling);
    if (result != PXB_SUCCESS) {
        const PixelFormat from = picture.format();
        throw Error(file, "resize", FormatName(from),
                    "the library answers " + ResultName(result) + "; convert to " +
                        std::string(FormatName(Converts(from, PXB_YUY2) ? PXB_YUY2 : PXB_RGB32)) +
                        " first");
    }
    RepeatEdges(target);
    return target;
}

void CheckMode(std::string_view file, const Picture& picture, const Scaling& scaling) {
    if (!WritesNothing(file, picture, scaling)) return;
    throw Error(file, "--mode", Describe(scaling.mode),
                "the library writes nothing in this mode from " +
                    ToString(SizeOf(scaling.from, picture.size())) + " to " +
                    ToString(SizeOf(scaling.to, scaling.size)) + " in " +
                    std::string(FormatName(picture.format())));
}

bool KeepsProportions(const Picture& picture, const Scaling& scaling) {
    const Size from = SizeOf(scaling.from, picture.size()), to = SizeOf(scaling.to, scaling.size);
    return std::int64_t{from.width} * to.height == std::int64_t{from.height} * to.width;
}

}  // namespace pxb::tool
