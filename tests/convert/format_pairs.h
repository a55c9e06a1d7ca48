// The pixel formats, and which of them convert into which.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "PxbLib.h"

namespace pxb::test {

constexpr int kFormats = 9;
constexpr const char* kFormatNames[] = {"",     "RGB24", "RGB32",  "YV12",   "YUY2",
                                        "I420", "RGB8",  "YUV422", "AYUV32", "NV12"};

constexpr std::int32_t kResults[kFormats][kFormats] = {
    // [from - 1][to - 1]
    {0, 0, 0, 0, 0, 1, 2, 2, 2},  // RGB24
    {0, 0, 0, 0, 0, 1, 2, 0, 0},  // RGB32
    {0, 0, 0, 0, 0, 1, 2, 2, 1},  // YV12
    {0, 0, 0, 0, 0, 1, 0, 2, 2},  // YUY2
    {0, 0, 0, 0, 0, 1, 2, 2, 2},  // I420
    {0, 1, 1, 1, 1, 1, 2, 2, 2},  // RGB8
    {0, 2, 2, 0, 2, 2, 2, 2, 2},  // YUV422
    {2, 0, 2, 2, 2, 2, 2, 2, 2},  // AYUV32
    {2, 0, 2, 2, 2, 2, 2, 2, 2},  // NV12
};

struct FormatPair {
    PixelFormat from, to;
};

inline std::string NameOf(FormatPair pair) {
    return std::string(kFormatNames[pair.from]).append("_to_").append(kFormatNames[pair.to]);
}

inline std::vector<FormatPair> PairsThatConvert() {
    std::vector<FormatPair> pairs;
    for (int from = 1; from <= kFormats; ++from)
        for (int to = 1; to <= kFormats; ++to)
            if (kResults[from - 1][to - 1] == 0)
                pairs.push_back({static_cast<PixelFormat>(from), static_cast<PixelFormat>(to)});
    return pairs;
}

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
