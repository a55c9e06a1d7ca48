// Blending kernels: each sample d of a destination becomes ((256 - a) d + a s) >> 8, where s is the
// source's sample and a the alpha of its pixel, 0 to 255. Truncated, never divided by 255: 255 gives
// 254 for white over black, and 0 leaves d as it is. All variants give the same bytes.
//
// Pointers are to the first sample of equally large rectangles; alpha has a byte for each pixel.
// Strides are bytes. The destination shares no memory with what is read.
#pragma once
#include "core/byte.h"
#include "core/variants.h"

namespace pxb {

using BlendPackedKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* src,
                               std::int32_t src_stride, const Byte* alpha,
                               std::int32_t alpha_stride, std::int32_t width, std::int32_t height);

using BlendByOwnAlphaKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* src,
                                   std::int32_t src_stride, std::int32_t width,
                                   std::int32_t height);

// One side of a blend of 4:2:0 planes, each from the first sample of the rectangle on.
struct BlendPlanes {
    Byte *y, *first_chroma, *second_chroma;
    std::int32_t stride, chroma_stride;
    std::int64_t chroma_samples;  // that each chroma plane has from there to its end
};

// Blocks of 2 x 2 pixels start at the rectangles' corners; at odd edges they have one or two pixels.
// The chroma sample of a block takes the alpha of its top left pixel, and is left out where it would
// lie behind the end of its plane in either image.
using BlendPlanar420Kernel = void(const BlendPlanes& dst, const BlendPlanes& src, const Byte* alpha,
                                  std::int32_t alpha_stride, std::int32_t width,
                                  std::int32_t height);

#define PXB_DECLARE_BLEND_KERNELS(target)                                             \
    namespace target {                                                                \
    BlendPackedKernel BlendRgb24, BlendYuy2;                                          \
    BlendPackedKernel BlendRgb32;               /* fourth byte stays */               \
    BlendByOwnAlphaKernel BlendRgb32ByOwnAlpha; /* alpha: the source's fourth byte */ \
    BlendPlanar420Kernel BlendYuv420;                                                 \
    }
PXB_TARGETS(PXB_DECLARE_BLEND_KERNELS)
#undef PXB_DECLARE_BLEND_KERNELS

constexpr auto kBlendRgb24 = PXB_VARIANTS_FROM_SSE2(BlendRgb24);
constexpr auto kBlendRgb32 = PXB_VARIANTS_FROM_SSE2(BlendRgb32);
constexpr auto kBlendRgb32ByOwnAlpha = PXB_VARIANTS_FROM_SSE2(BlendRgb32ByOwnAlpha);
constexpr auto kBlendYuy2 = PXB_VARIANTS_FROM_SSE2(BlendYuy2);
constexpr auto kBlendYuv420 = PXB_VARIANTS_FROM_SSE2(BlendYuv420);

}  // namespace pxb
