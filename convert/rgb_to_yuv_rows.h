// The row loops of the RGB to YUV kernels, shared by all variants.
//
// The advances from row to row are required to be computed from the full width although only whole
// pairs of columns are converted. With an odd width, RGB, luma and packed pixels therefore start one
// pixel further left in each further row (4:2:0: pair of rows). Chroma planes do not.
#pragma once
#include "core/rows.h"

namespace pxb {

// convert(y0, y1, u, v, src0, src1) for each pair of rows.
template <int kBytesPerPixel, class RowPair>
PXB_INLINE void ForRowPairsOfRgb(Byte* y, Byte* u, Byte* v, std::ptrdiff_t y_stride,
                                 std::ptrdiff_t chroma_stride, const Byte* src,
                                 std::ptrdiff_t src_stride, std::int32_t width, std::int32_t height,
                                 const RowPair& convert) {
    if (width < 2) return;
    FlipIfNegative(height, src, src_stride);
    const int odd = width & 1;
    Rows rgb(src, src_stride, 2, odd * kBytesPerPixel);
    Rows luma(y, y_stride, 2, odd);
    Rows chroma_u(u, chroma_stride), chroma_v(v, chroma_stride);
    for (std::ptrdiff_t pairs = CountRows(height) / 2; pairs > 0; --pairs) {
        convert(luma[0], luma[1], chroma_u[0], chroma_v[0], rgb[0], rgb[1]);
        rgb.Next(), luma.Next(), chroma_u.Next(), chroma_v.Next();
    }
}

// convert(dst, src) for each row, from RGB to YUY2.
template <int kBytesPerPixel, class Row>
PXB_INLINE void ForRowsOfRgb(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                             std::ptrdiff_t src_stride, std::int32_t width, std::int32_t height,
                             const Row& convert) {
    if (width < 2) return;
    FlipIfNegative(height, src, src_stride);
    const int odd = width & 1;
    Rows rgb(src, src_stride, 1, odd * kBytesPerPixel);
    Rows yuy2(dst, dst_stride, 1, odd * 2);
    for (std::ptrdiff_t rows = CountRows(height); rows > 0; --rows) {
        convert(yuy2[0], rgb[0]);
        rgb.Next(), yuy2.Next();
    }
}

}  // namespace pxb
