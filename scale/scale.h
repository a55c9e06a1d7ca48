// Scaling of images as planes and extents: which filter, which tables, which kernel. Where memory
// for the work is short, nothing at all is written.
#pragma once
#include "core/planes.h"
#include "scale/filter.h"

namespace pxb {

template <class T>
struct PixelRows {
    T* data;
    std::ptrdiff_t stride;
    int bytes_per_pixel;
};

void ScaleInterleaved(const PixelRows<Byte>& dst, const PixelRows<const Byte>& src,
                      std::int32_t mode, const ScaleExtents& extents);

// Chroma planes have half the extents.
void ScalePlanar420(const Planes420& dst, const Planes420& src, std::int32_t mode,
                    const ScaleExtents& luma);

// Always bilinear. Whole groups of two pixels are written.
void ScalePacked422(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                    std::ptrdiff_t src_stride, const ScaleExtents& luma);

}  // namespace pxb
