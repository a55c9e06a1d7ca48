// What tests know of the pixel formats.
#pragma once
#include "PxbLib.h"

namespace pxb::test {

constexpr int kFormats = 9;
constexpr const char* kFormatNames[] = {"",     "RGB24", "RGB32",  "YV12",   "YUY2",
                                        "I420", "RGB8",  "YUV422", "AYUV32", "NV12"};

struct Size {
    int width, height;
};

constexpr bool IsRgb(int format) {
    return format == PXB_RGB24 || format == PXB_RGB32;
}
constexpr bool Is420(int format) {
    return format == PXB_YV12 || format == PXB_I420 || format == PXB_NV12;
}

// From one pixel to the next in the first plane.
constexpr int BytesPerPixel(int format) {
    switch (format) {
        case PXB_RGB24:
            return 3;
        case PXB_RGB32:
        case PXB_AYUV32:
            return 4;
        case PXB_YUY2:
            return 2;
        default:
            return 1;
    }
}

}  // namespace pxb::test
