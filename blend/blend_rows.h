// The row loops of blending, shared by all variants.
#pragma once
#include "blend/blend_kernels.h"
#include "core/rows.h"

namespace pxb {

// blend(dst, src, alpha) for each row.
template <class Row>
PXB_INLINE void ForBlendedRows(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                               std::ptrdiff_t src_stride, const Byte* alpha,
                               std::ptrdiff_t alpha_stride, std::int32_t height, const Row& blend) {
    Rows weights(alpha, alpha_stride);
    ForRows(dst, dst_stride, src, src_stride, height,
            [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                blend(to, from, weights[0]);
                weights.Next();
            });
}

// luma(dst, src, alpha, count) for each row. After each first row of a pair follows chroma(dst0,
// dst1, src0, src1, alpha, count) for the samples that both images have.
template <class Luma, class Chroma>
PXB_INLINE void ForRowsOf420(const BlendPlanes& dst, const BlendPlanes& src, const Byte* alpha,
                             std::ptrdiff_t alpha_stride, std::int32_t width, std::int32_t height,
                             const Luma& luma, const Chroma& chroma) {
    const std::ptrdiff_t columns = (std::ptrdiff_t{width} + 1) / 2;
    for (std::ptrdiff_t y = 0; y < height; ++y, alpha += alpha_stride) {
        luma(dst.y + y * dst.stride, src.y + y * src.stride, alpha, width);
        if (y % 2 != 0) continue;
        const std::ptrdiff_t to = y / 2 * dst.chroma_stride, from = y / 2 * src.chroma_stride;
        std::int64_t count = columns;
        if (dst.chroma_samples - to < count) count = dst.chroma_samples - to;
        if (src.chroma_samples - from < count) count = src.chroma_samples - from;
        if (count <= 0) continue;
        chroma(dst.first_chroma + to, dst.second_chroma + to, src.first_chroma + from,
               src.second_chroma + from, alpha, static_cast<std::ptrdiff_t>(count));
    }
}

}  // namespace pxb
