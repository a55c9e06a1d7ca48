// Kernels that take one 8-bit channel out of packed images. `width` may be any number of pixels, for
// YUY2 any even one.
#pragma once
#include "convert/kernels.h"
#include "core/rows.h"

namespace pxb {

// Grey is of each pixel (151 G + 77 R + 28 B) >> 8: full range, the weights sum to 256. Luma is Y of
// the conversions to YUV.
#define PXB_DECLARE_CHANNEL(target)                                  \
    namespace target {                                               \
    PackedToChannelKernel TakeRgb32Channel;                          \
    PackedToPackedKernel TakeRgb24Grey;                              \
    PackedToPackedKernel TakeRgb24Luma, TakeRgb32Luma, TakeYuy2Luma; \
    }
PXB_TARGETS(PXB_DECLARE_CHANNEL)
#undef PXB_DECLARE_CHANNEL

constexpr auto kRgb32Channel = PXB_VARIANTS_FROM_SSE2(TakeRgb32Channel);
constexpr auto kRgb24Grey = PXB_VARIANTS_FROM_SSE2(TakeRgb24Grey);
constexpr auto kRgb24Luma = PXB_VARIANTS_FROM_SSE2(TakeRgb24Luma);
constexpr auto kRgb32Luma = PXB_VARIANTS_FROM_SSE2(TakeRgb32Luma);
constexpr auto kYuy2Luma = PXB_VARIANTS_FROM_SSE2(TakeYuy2Luma);

}  // namespace pxb
