// The kernels of scaling. Each scales one or two planes, or a packed image, by tables of columns
// and rows: vertically into a row of scratch memory, then from there horizontally. Nothing is read
// but the rows of the source, nothing written but the rows of the destination.
#pragma once
#include "core/variants.h"
#include "scale/column.h"

namespace pxb {

struct ScaleJob {
    Byte* dst[2];
    const Byte* src[2];
    int planes;  // 1 or 2, of equal size and strides
    std::ptrdiff_t dst_stride, src_stride;
    std::ptrdiff_t dst_row_bytes, src_row_bytes;  // at least 1
    std::int32_t dst_height, src_height;          // at least 1
    const SourcePoint* rows;                      // dst_height
    const SourcePoint* columns[2];                // the tables of the layout
    PixelLayout layout;
    Byte* scratch;  // ScratchBytes(dst_row_bytes, src_row_bytes), at a multiple of 64
};

// Enough for any kernel: two rows of the source with room around them, and tables.
constexpr std::int64_t ScratchBytes(std::int64_t dst_row_bytes, std::int64_t src_row_bytes) {
    return 2 * (src_row_bytes + 512) + 11 * dst_row_bytes + 4096;
}

using ScaleKernel = void(const ScaleJob& job);

#define PXB_DECLARE_SCALE_KERNELS(target)                                   \
    namespace target {                                                      \
    ScaleKernel ScaleNearest;  /* source and destination of one layout */   \
    ScaleKernel ScaleBilinear; /* and faded; points without weights, too */ \
    ScaleKernel ScaleSpline;                                                \
    }
PXB_DECLARE_SCALE_KERNELS(plain)
PXB_DECLARE_SCALE_KERNELS(sse2)
PXB_WIDE_TARGETS(PXB_TARGET_ALONE, PXB_DECLARE_SCALE_KERNELS)
#undef PXB_DECLARE_SCALE_KERNELS

constexpr auto kScaleNearest = PXB_VARIANTS_FROM_AVX2(ScaleNearest);
constexpr auto kScaleBilinear = PXB_VARIANTS_FROM_SSE2(ScaleBilinear);
constexpr auto kScaleSpline = PXB_VARIANTS_FROM_SSE2(ScaleSpline);

}  // namespace pxb
