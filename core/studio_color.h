// One colour in studio-range YUV (ITU-R BT.601), for the fill.
#pragma once
#include <cstdint>

namespace pxb {

struct Rgb {
    std::uint8_t r, g, b;
};

struct Yuv {
    std::uint8_t y, u, v;
};

// The same bytes on every build and in every floating-point environment, which is left as it was.
Yuv StudioYuv(Rgb color);

}  // namespace pxb
