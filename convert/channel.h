// Kernels that take one 8-bit channel out of packed RGB. `width` may be any number of pixels.
#pragma once
#include "convert/processor.h"
#include "core/rows.h"

namespace pxb {

// `byte` is the place of the channel in the pixel, 0 to 3.
using Rgb32ChannelKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* src,
                                std::int32_t src_stride, std::int32_t width, std::int32_t height,
                                std::int32_t byte);

// Grey of each pixel, (151 G + 77 R + 28 B) >> 8: full range, the weights sum to 256.
using Rgb24GreyKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* src,
                             std::int32_t src_stride, std::int32_t width, std::int32_t height);

#define PXB_DECLARE_CHANNEL(target)      \
    namespace target {                   \
    Rgb32ChannelKernel TakeRgb32Channel; \
    Rgb24GreyKernel TakeRgb24Grey;       \
    }
PXB_DECLARE_CHANNEL(plain)
PXB_DECLARE_CHANNEL(pairwise)
PXB_DECLARE_CHANNEL(mmx)
PXB_DECLARE_CHANNEL(sse2)
PXB_DECLARE_CHANNEL(avx2)
PXB_DECLARE_CHANNEL(avx512)
#undef PXB_DECLARE_CHANNEL

constexpr Variants<Rgb32ChannelKernel> kRgb32Channel = PXB_VARIANTS_FROM_SSE2(TakeRgb32Channel);
constexpr Variants<Rgb24GreyKernel> kRgb24Grey = PXB_VARIANTS_FROM_SSE2(TakeRgb24Grey);

}  // namespace pxb
