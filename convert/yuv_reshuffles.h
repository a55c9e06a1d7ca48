// Conversions between YUV layouts, which move samples without colour arithmetic. Whole pairs of
// columns (4:2:0: and of rows) are converted, except that copies take everything; nothing drifts.
// Strides are bytes.
#pragma once
#include "convert/processor.h"
#include "core/rows.h"

namespace pxb {

// width x 2 bytes of each row, also of odd widths. A negative height turns the source upside down.
using Yuy2CopyKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* src,
                            std::int32_t src_stride, std::int32_t width, std::int32_t height);

// Planes of the destination follow one another as those of an image of `height` rows do. Luma is
// copied whole, chroma as (width / 2) x (height / 2) samples.
using Yuv420CopyKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                              const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                              std::int32_t width, std::int32_t height);

// Both rows of a pair get the same chroma. A negative height turns the destination upside down.
using Yuv420ToYuy2Kernel = void(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                                const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                                std::int32_t width, std::int32_t height);

// Chroma is the rounded average of both rows. A negative height turns the source upside down.
using Yuy2ToYuv420Kernel = void(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                                std::int32_t chroma_stride, const Byte* src,
                                std::int32_t src_stride, std::int32_t width, std::int32_t height);

// Tight runs on both sides: `height` rows of `half_width` pairs of pixels.
using Yuy2SplitKernel = void(Byte* y, Byte* u, Byte* v, const Byte* yuy2, std::int32_t height,
                             std::int32_t half_width);
using Yuy2MergeKernel = void(const Byte* y, const Byte* u, const Byte* v, Byte* yuy2,
                             std::int32_t height, std::int32_t half_width);

#define PXB_DECLARE_YUV_RESHUFFLES(target)  \
    namespace target {                      \
    Yuv420ToYuy2Kernel ConvertYuv420ToYuy2; \
    Yuy2ToYuv420Kernel ConvertYuy2ToYuv420; \
    Yuy2SplitKernel ConvertYuy2ToYuv422;    \
    Yuy2MergeKernel ConvertYuv422ToYuy2;    \
    }
PXB_DECLARE_YUV_RESHUFFLES(plain)
PXB_DECLARE_YUV_RESHUFFLES(pairwise)
PXB_DECLARE_YUV_RESHUFFLES(mmx)
PXB_DECLARE_YUV_RESHUFFLES(sse2)
PXB_DECLARE_YUV_RESHUFFLES(avx2)
PXB_DECLARE_YUV_RESHUFFLES(avx512)
#undef PXB_DECLARE_YUV_RESHUFFLES

// Copies are the same for all processors.
Yuy2CopyKernel CopyYuy2;
Yuv420CopyKernel CopyYuv420ToYv12, CopyYuv420ToI420;

constexpr Variants<Yuy2CopyKernel> kCopyYuy2 = {CopyYuy2};
constexpr Variants<Yuv420CopyKernel> kCopyYuv420ToYv12 = {CopyYuv420ToYv12};
constexpr Variants<Yuv420CopyKernel> kCopyYuv420ToI420 = {CopyYuv420ToI420};

constexpr Variants<Yuv420ToYuy2Kernel> kYuv420ToYuy2 = PXB_VARIANTS_FROM_MMX(ConvertYuv420ToYuy2);
constexpr Variants<Yuy2ToYuv420Kernel> kYuy2ToYuv420 = PXB_VARIANTS_FROM_MMX(ConvertYuy2ToYuv420);
constexpr Variants<Yuy2SplitKernel> kYuy2ToYuv422 = PXB_VARIANTS_FROM_SSE2(ConvertYuy2ToYuv422);
constexpr Variants<Yuy2MergeKernel> kYuv422ToYuy2 = PXB_VARIANTS_FROM_SSE2(ConvertYuv422ToYuy2);

}  // namespace pxb
