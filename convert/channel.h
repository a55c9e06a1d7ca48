// Kernels that take one 8-bit channel out of packed RGB. `width` may be any number of pixels.
#pragma once
#include "convert/kernels.h"
#include "core/rows.h"

namespace pxb {

// Grey is of each pixel (151 G + 77 R + 28 B) >> 8: full range, the weights sum to 256.
#define PXB_DECLARE_CHANNEL(target)         \
    namespace target {                      \
    PackedToChannelKernel TakeRgb32Channel; \
    PackedToPackedKernel TakeRgb24Grey;     \
    }
PXB_TARGETS(PXB_DECLARE_CHANNEL)
#undef PXB_DECLARE_CHANNEL

constexpr auto kRgb32Channel = PXB_VARIANTS_FROM_SSE2(TakeRgb32Channel);
constexpr auto kRgb24Grey = PXB_VARIANTS_FROM_SSE2(TakeRgb24Grey);

}  // namespace pxb
