// A second opinion on scaling, for comparison with the library: byte by byte, positions as literal
// sums of doubles. The floating-point unit must round doubles to nearest at every step.
#pragma once
#include <PxbLib.h>

#include <cstdint>

// What PxbResize(&dst, &src, mode) must answer and write, companions included.
std::int32_t ResizeByReference(const ImageBuffer& dst, const ImageBuffer& src,
                               const std::int32_t* mode);

// The same of PxbResizeEx; null rectangles stand for whole images.
std::int32_t ResizeExByReference(const ImageBuffer& dst, const ImageBuffer& src,
                                 const std::int32_t* mode, const Rect* dst_rect,
                                 const Rect* src_rect);
