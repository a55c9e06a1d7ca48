// Turns of planar 4:2:0 images.
#pragma once
#include <cstdint>

#include "core/byte.h"

namespace pxb {

// Turns three planes by 90, 180 or 270 degrees; other angles do nothing. 90 is clockwise as seen on
// the screen, 270 counter-clockwise: the opposite of RotateInterleaved, and callers depend on it.
// Strides tell where the planes lie; the rows within them follow one another without padding, of
// `width` samples in the source and of `height` or `width` in the destination. The destination has to
// hold as many samples as the source.
void RotatePlanar420(Byte* dst, const Byte* src, std::int32_t dst_height, std::int32_t dst_stride,
                     std::int32_t src_stride, std::int32_t angle_degrees, std::int32_t width,
                     std::int32_t height);

}  // namespace pxb
