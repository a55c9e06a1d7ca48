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

constexpr Variants<BlendPackedKernel> kBlendRgb24 = {plain::BlendRgb24};
constexpr Variants<BlendPackedKernel> kBlendRgb32 = {plain::BlendRgb32};
constexpr Variants<BlendByOwnAlphaKernel> kBlendRgb32ByOwnAlpha = {plain::BlendRgb32ByOwnAlpha};
constexpr Variants<BlendPackedKernel> kBlendYuy2 = {plain::BlendYuy2};
constexpr Variants<BlendPlanar420Kernel> kBlendYuv420 = {plain::BlendYuv420};

}  // namespace pxb
