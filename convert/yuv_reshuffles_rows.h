// The row loops of the YUV reshuffles, shared by all variants.
#pragma once
#include "core/rows.h"

namespace pxb {

// convert(packed0, packed1, y0, y1, u, v) for each pair of rows. Either side may be the source.
template <class Packed, class Plane, class RowPair>
PXB_INLINE void ForRowPairsOfYuy2And420(Packed* packed, std::ptrdiff_t packed_stride, Plane* y,
                                        Plane* u, Plane* v, std::ptrdiff_t y_stride,
                                        std::ptrdiff_t chroma_stride, std::int32_t height,
                                        const RowPair& convert) {
    FlipIfNegative(height, packed, packed_stride);
    Rows yuy2(packed, packed_stride, 2);
    Rows luma(y, y_stride, 2);
    Rows chroma_u(u, chroma_stride), chroma_v(v, chroma_stride);
    for (std::ptrdiff_t pairs = CountRows(height) / 2; pairs > 0; --pairs) {
        convert(yuy2[0], yuy2[1], luma[0], luma[1], chroma_u[0], chroma_v[0]);
        yuy2.Next(), luma.Next(), chroma_u.Next(), chroma_v.Next();
    }
}

}  // namespace pxb
