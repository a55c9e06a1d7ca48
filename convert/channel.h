// Kernels that take one 8-bit channel out of packed RGB. `width` may be any number of pixels.
#pragma once
#include "convert/processor.h"
#include "core/rows.h"

namespace pxb {

// `byte` is the place of the channel in the pixel, 0 to 3.
using Rgb32ChannelKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* src,
                                std::int32_t src_stride, std::int32_t width, std::int32_t height,
                                std::int32_t byte);

namespace plain {
Rgb32ChannelKernel TakeRgb32Channel;
}
namespace pairwise {
Rgb32ChannelKernel TakeRgb32Channel;
}
namespace mmx {
Rgb32ChannelKernel TakeRgb32Channel;
}
namespace sse2 {
Rgb32ChannelKernel TakeRgb32Channel;
}
namespace avx2 {
Rgb32ChannelKernel TakeRgb32Channel;
}

constexpr Variants<Rgb32ChannelKernel> kRgb32Channel = {
    plain::TakeRgb32Channel, nullptr, sse2::TakeRgb32Channel, avx2::TakeRgb32Channel};

// Grey of each RGB24 pixel, (151 G + 77 R + 28 B) >> 8: full range, the weights sum to 256.
void TakeRgb24Grey(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                   std::int32_t width, std::int32_t height);

}  // namespace pxb
