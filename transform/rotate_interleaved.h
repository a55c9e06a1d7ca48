// Turns of packed RGB and grey images.
#pragma once
#include <cstdint>

#include "core/byte.h"

namespace pxb {

// Turns about the centres, counter-clockwise as seen on the screen; extents are not negative. At 90,
// 180 and 270 exact copies of pixels are laid over the edges that the interpolation leaves out or
// fades: row 0, and save at 90 column 0. Images of other than 3 or 4 bytes a pixel get these alone.
//
// The copies go by the destination's size alone. Let dst be Wd x Hd and src Ws x Hs; then they stay
// inside both images if at 90 and 270 Wd <= Hs and Hd <= Ws, and at 180 Wd <= Ws, Hd <= Hs, and the
// strides are equal, since there the source's steps through the destination's rows.
void RotateInterleaved(std::int32_t dst_bits_per_pixel, Byte* dst, std::int32_t dst_width,
                       std::int32_t dst_height, std::int32_t dst_stride, const Byte* src,
                       std::int32_t src_width, std::int32_t src_height, std::int32_t src_stride,
                       std::int32_t src_bits_per_pixel, std::int32_t angle_degrees);

}  // namespace pxb
