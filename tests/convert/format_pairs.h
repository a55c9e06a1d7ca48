// Which formats convert into which.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "support/formats.h"

namespace pxb::test {

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

}  // namespace pxb::test
