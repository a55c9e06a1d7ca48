// The nine pixel formats by name, and the planes of an image as rows of bytes.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "PxbLib.h"

namespace pxb::tool {

inline constexpr std::array kAllFormats = {PXB_RGB24, PXB_RGB32,  PXB_YV12,   PXB_YUY2, PXB_I420,
                                           PXB_RGB8,  PXB_YUV422, PXB_AYUV32, PXB_NV12};

struct Size {
    std::int32_t width, height;
};

std::string_view FormatName(std::int32_t format);
std::string FormatNames();                                     // all nine, separated by commas
std::optional<PixelFormat> FindFormat(std::string_view name);  // capitals do not matter

std::optional<PixelFormat> FindFormatOrCode(std::string_view text);  // also "1" to "9"

std::string ToString(Size size);  // 640x480

// One plane of an image of which the top left `visible` pixels matter.
struct Plane {
    std::string_view samples;  // in memory order
    std::int64_t offset;       // bytes from the image's data
    std::int64_t stride;       // bytes from row to row
    std::int64_t row_bytes;    // bytes of a visible row
    std::int64_t rows;         // visible rows
    // To repeat the last pixel of a row, copy `pixel_bytes` over a distance of `pixel_step`; 0
    // where one sample serves two columns, so that rows of an odd width are complete.
    int pixel_bytes, pixel_step;
    bool halved_rows;  // one row serves two: an odd height is complete
};

// `image` tells the format and, for strides and offsets, the extents in memory.
std::vector<Plane> PlanesOf(const ImageBuffer& image, Size visible);

// Bytes of a frame as files hold it: all visible rows of all planes without gaps.
std::int64_t FrameBytes(PixelFormat format, Size size);

}  // namespace pxb::tool
