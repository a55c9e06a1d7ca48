// Names and plane geometry of the pixel formats.
#include "formats.h"

#include <algorithm>
#include <cctype>

#include "numbers.h"

namespace pxb::tool {
namespace {

constexpr std::string_view kNames[] = {"RGB24", "RGB32",  "YV12",   "YUY2", "I420",
                                       "RGB8",  "YUV422", "AYUV32", "NV12"};

bool SameLetters(std::string_view a, std::string_view b) {
    return std::ranges::equal(
        a, b, [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

}  // namespace

std::string_view FormatName(std::int32_t format) {
    return kNames[format - 1];
}

std::string FormatNames() {
    std::string names;
    for (const std::string_view name : kNames) names.append(names.empty() ? "" : ", ").append(name);
    return names;
}

std::optional<PixelFormat> FindFormat(std::string_view name) {
    for (const PixelFormat format : kAllFormats)
        if (SameLetters(name, FormatName(format))) return format;
    return std::nullopt;
}

std::optional<PixelFormat> FindFormatOrCode(std::string_view text) {
    if (const auto code = ParseNumber(text, 1, static_cast<std::int32_t>(kAllFormats.size())))
        return static_cast<PixelFormat>(*code);
    return FindFormat(text);
}

std::string ToString(Size size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

std::vector<Plane> PlanesOf(const ImageBuffer& image, Size visible) {
    const std::int64_t stride = image.stride, luma_bytes = stride * image.height;
    const std::int64_t width = visible.width, height = visible.height;
    const std::int64_t chroma_width = (width + 1) / 2, chroma_height = (height + 1) / 2;
    const auto interleaved = [&](std::string_view samples, int bytes) {
        return std::vector<Plane>{{samples, 0, stride, bytes * width, height, bytes, bytes, false}};
    };
    const auto planar420 = [&](std::string_view first, std::string_view second) {
        return std::vector<Plane>{
            {"Y", 0, stride, width, height, 1, 1, false},
            {first, luma_bytes, stride / 2, chroma_width, chroma_height, 0, 0, true},
            {second, luma_bytes + luma_bytes / 4, stride / 2, chroma_width, chroma_height, 0, 0,
             true}};
    };

    switch (image.format) {
        case PXB_RGB24:
            return interleaved("B G R", 3);
        case PXB_RGB32:
            return interleaved("B G R X", 4);
        case PXB_AYUV32:
            return interleaved("A Y U V", 4);
        case PXB_YV12:
            return planar420("V", "U");
        case PXB_I420:
            return planar420("U", "V");
        case PXB_NV12:
            return {{"Y", 0, stride, width, height, 1, 1, false},
                    {"U V", luma_bytes, stride, 2 * chroma_width, chroma_height, 0, 0, true}};
        case PXB_YUY2:
            return {{"Y0 U Y1 V", 0, stride, 4 * chroma_width, height, 1, 2, false}};
        case PXB_YUV422: {
            // The planar reading: three tight planes in the bytes of the packed one.
            const std::int64_t pitch = image.width, luma = pitch * image.height;
            return {{"Y", 0, pitch, width, height, 1, 1, false},
                    {"U", luma, pitch / 2, chroma_width, height, 0, 0, false},
                    {"V", luma + luma / 2, pitch / 2, chroma_width, height, 0, 0, false}};
        }
        default:
            return interleaved("grey", 1);
    }
}

std::int64_t FrameBytes(PixelFormat format, Size size) {
    ImageBuffer image{};
    image.format = format;
    std::int64_t bytes = 0;
    for (const Plane& plane : PlanesOf(image, size)) bytes += plane.row_bytes * plane.rows;
    return bytes;
}

}  // namespace pxb::tool
