// The row loops of the conversions that work on pairs of columns, shared by all variants.
//
// The advances from row to row are required to be computed from the full width although only whole
// pairs of columns are converted. With an odd width, RGB, luma and packed pixels therefore start
// one pixel further left in each further row (4:2:0: pair of rows). Chroma planes do not.
// Conversions that must not drift pass an even width.
#pragma once
#include "core/rows.h"

namespace pxb {

PXB_INLINE std::int32_t EvenWidth(std::int32_t width) {
    return width & ~1;
}

// convert(packed0, packed1, y0, y1, u, v) for each pair of rows; either side is the source. A
// negative height turns the packed image upside down.
template <int kPackedBytes, class Packed, class Plane, class RowPair>
PXB_INLINE void ForRowPairsOfPackedAnd420(Packed* packed, std::ptrdiff_t packed_stride, Plane* y,
                                          Plane* u, Plane* v, std::ptrdiff_t y_stride,
                                          std::ptrdiff_t chroma_stride, std::int32_t width,
                                          std::int32_t height, const RowPair& convert) {
    if (width < 2) return;
    FlipIfNegative(height, packed, packed_stride);
    const int odd = width & 1;
    Rows pixels(packed, packed_stride, 2, odd * kPackedBytes);
    Rows luma(y, y_stride, 2, odd);
    Rows chroma_u(u, chroma_stride), chroma_v(v, chroma_stride);
    for (std::ptrdiff_t pairs = CountRows(height) / 2; pairs > 0; --pairs) {
        convert(pixels[0], pixels[1], luma[0], luma[1], chroma_u[0], chroma_v[0]);
        pixels.Next(), luma.Next(), chroma_u.Next(), chroma_v.Next();
    }
}

// convert(dst, src) for each row of packed pixels. A negative height turns the source upside down.
template <int kDstBytes, int kSrcBytes, class Row>
PXB_INLINE void ForDriftingRows(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                                std::ptrdiff_t src_stride, std::int32_t width, std::int32_t height,
                                const Row& convert) {
    if (width < 2) return;
    FlipIfNegative(height, src, src_stride);
    const int odd = width & 1;
    Rows to(dst, dst_stride, 1, odd * kDstBytes);
    Rows from(src, src_stride, 1, odd * kSrcBytes);
    for (std::ptrdiff_t rows = CountRows(height); rows > 0; --rows) {
        convert(to[0], from[0]);
        to.Next(), from.Next();
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
