// The row loops of the YUV to RGB kernels, shared by the plain and the SIMD arithmetic.
//
// The advances from row to row are required to be computed from the full width although only whole
// pairs of columns are converted. With an odd width, luma, packed pixels and RGB therefore start one
// pixel further left in each further row (4:2:0: pair of rows). Chroma does not.
#pragma once
#include "core/rows.h"

namespace pxb {

// convert(dst0, dst1, y0, y1, u, v) for each pair of rows.
template <int kBytesPerPixel, class RowPair>
PXB_INLINE void ForRowPairsOf420(Byte* dst, std::ptrdiff_t dst_stride, const Byte* y, const Byte* u,
                                 const Byte* v, std::ptrdiff_t y_stride,
                                 std::ptrdiff_t chroma_stride, std::int32_t width,
                                 std::int32_t height, const RowPair& convert) {
    if (width < 2) return;
    FlipIfNegative(height, dst, dst_stride);
    const int odd = width & 1;
    Rows rgb(dst, dst_stride, 2, odd * kBytesPerPixel);
    Rows luma(y, y_stride, 2, odd);
    Rows chroma_u(u, chroma_stride), chroma_v(v, chroma_stride);
    for (std::ptrdiff_t pairs = CountRows(height) / 2; pairs > 0; --pairs) {
        convert(rgb[0], rgb[1], luma[0], luma[1], chroma_u[0], chroma_v[0]);
        rgb.Next(), luma.Next(), chroma_u.Next(), chroma_v.Next();
    }
}

// convert(dst, src) for each row.
template <int kBytesPerPixel, class Row>
PXB_INLINE void ForRowsOfYuy2(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                              std::ptrdiff_t src_stride, std::int32_t width, std::int32_t height,
                              const Row& convert) {
    if (width < 2) return;
    FlipIfNegative(height, src, src_stride);
    const int odd = width & 1;
    Rows rgb(dst, dst_stride, 1, odd * kBytesPerPixel);
    Rows yuy2(src, src_stride, 1, odd * 2);
    for (std::ptrdiff_t rows = CountRows(height); rows > 0; --rows) {
        convert(rgb[0], yuy2[0]);
        rgb.Next(), yuy2.Next();
    }
}

// convert(dst, y, u, v) for each row. A negative height turns the RGB image upside down.
template <int kBytesPerPixel, class Row>
PXB_INLINE void ForRowsOf422(std::int32_t width, Byte* dst, std::ptrdiff_t dst_stride,
                             const Byte* y, std::ptrdiff_t y_stride, const Byte* u, const Byte* v,
                             std::ptrdiff_t chroma_advance, std::int32_t height,
                             const Row& convert) {
    if (width < 2) return;
    FlipIfNegative(height, dst, dst_stride);
    const int odd = width & 1;
    const std::ptrdiff_t chroma_stride = width / 2 + chroma_advance - width;
    Rows rgb(dst, dst_stride, 1, odd * kBytesPerPixel);
    Rows luma(y, y_stride, 1, odd);
    Rows chroma_u(u, chroma_stride), chroma_v(v, chroma_stride);
    for (std::ptrdiff_t rows = CountRows(height); rows > 0; --rows) {
        convert(rgb[0], luma[0], chroma_u[0], chroma_v[0]);
        rgb.Next(), luma.Next(), chroma_u.Next(), chroma_v.Next();
    }
}

}  // namespace pxb
