// The table of pixel formats, from which sizes of rows and planes are derived.
#pragma once
#include <cstdint>

#include "PxbLib.h"

namespace pxb {

struct FormatInfo {
    std::int32_t bits_per_pixel;
    bool even_width;  // widths are rounded up to even
    bool planar420;   // heights too, and the stride is that of the luma plane
};

inline constexpr FormatInfo kFormats[] = {
    {24, false, false},  // RGB24
    {32, false, false},  // RGB32
    {12, true, true},    // YV12
    {16, true, false},   // YUY2
    {12, true, true},    // I420
    {8, false, false},   // RGB8
    {16, true, false},   // YUV422
    {32, false, false},  // AYUV32
    {12, true, true},    // NV12
};

// Null for a code outside 1 to 9.
constexpr const FormatInfo* FindFormat(std::int32_t format) {
    return format >= PXB_RGB24 && format <= PXB_NV12 ? &kFormats[format - 1] : nullptr;
}

}  // namespace pxb
