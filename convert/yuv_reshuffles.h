// Conversions between YUV layouts, which move samples without colour arithmetic. Whole pairs of
// columns (4:2:0: and of rows) are converted, except that copies take everything; nothing drifts.
// Strides are bytes.
#pragma once
#include "convert/kernels.h"
#include "core/rows.h"

namespace pxb {

// Planar 4:2:0 to YUY2: both rows of a pair get the same chroma; a negative height turns the
// destination upside down. YUY2 to planar 4:2:0: chroma is the rounded average of both rows; a
// negative height turns the source upside down.
#define PXB_DECLARE_YUV_RESHUFFLES(target)            \
    namespace target {                                \
    Planar420ToPackedKernel ConvertYuv420ToYuy2;      \
    PackedToPlanar420Kernel ConvertYuy2ToYuv420;      \
    TightPackedToPlanar422Kernel ConvertYuy2ToYuv422; \
    TightPlanar422ToPackedKernel ConvertYuv422ToYuy2; \
    }
PXB_TARGETS(PXB_DECLARE_YUV_RESHUFFLES)
#undef PXB_DECLARE_YUV_RESHUFFLES

// Copies are the same for all processors.
//
// width x 2 bytes of each row, also of odd widths. A negative height turns the source upside down.
PackedToPackedKernel CopyYuy2;

// Planes of the destination follow one another as those of an image of `height` rows do. Luma is
// copied whole, chroma as (width / 2) x (height / 2) samples.
Planar420ToPackedKernel CopyYuv420ToYv12, CopyYuv420ToI420;

constexpr Variants<PackedToPackedKernel> kCopyYuy2 = {CopyYuy2};
constexpr Variants<Planar420ToPackedKernel> kCopyYuv420ToYv12 = {CopyYuv420ToYv12};
constexpr Variants<Planar420ToPackedKernel> kCopyYuv420ToI420 = {CopyYuv420ToI420};

constexpr auto kYuv420ToYuy2 = PXB_VARIANTS_FROM_MMX(ConvertYuv420ToYuy2);
constexpr auto kYuy2ToYuv420 = PXB_VARIANTS_FROM_MMX(ConvertYuy2ToYuv420);
constexpr auto kYuy2ToYuv422 = PXB_VARIANTS_FROM_SSE2(ConvertYuy2ToYuv422);
constexpr auto kYuv422ToYuy2 = PXB_VARIANTS_FROM_SSE2(ConvertYuv422ToYuy2);

}  // namespace pxb
