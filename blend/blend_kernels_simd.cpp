// Blending, the same bytes as the plain kernels.
#include <utility>

#include "blend/blend_kernels.h"
#include "blend/blend_rows.h"
#include "core/simd/writer.h"

namespace pxb::PXB_TARGET {
namespace {

// Blending reads what it writes: no step may reach back over pixels that are done, and what is in
// the caches is better written there.
PXB_INLINE Widths BlendWidths() {
    return Widths(false);
}

// V::kPixels pixels of kBytes bytes, in as many registers: weights<kPart>() for each.
template <class V, int kBytes, class Weights>
PXB_INLINE void BlendPixels(Byte* dst, const Byte* src, const Weights& weights) {
    [&]<int... kPart>(std::integer_sequence<int, kPart...>) PXB_INLINE_LAMBDA {
        (V::Store(dst + kPart * V::kPixels,
                  V::Lerp(V::Load(dst + kPart * V::kPixels), V::Load(src + kPart * V::kPixels),
                          weights.template operator()<kPart>())),
         ...);
    }
    (std::make_integer_sequence<int, kBytes>());
}

template <int kBytes>
PXB_INLINE void BlendRow(Byte* dst, const Byte* src, const Byte* alpha, std::ptrdiff_t width) {
    BlendWidths().ForPixelsInPlace(width, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
        BlendPixels<V, kBytes>(dst + kBytes * x, src + kBytes * x,
                               [=]<int kPart>() PXB_INLINE_LAMBDA {
                                   return V::template LoadWeights<kBytes, kPart>(alpha + x);
                               });
    });
}

template <int kBytes>
PXB_INLINE void BlendPacked(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                            std::ptrdiff_t src_stride, const Byte* alpha,
                            std::ptrdiff_t alpha_stride, std::int32_t width, std::int32_t height) {
    ForBlendedRows(dst, dst_stride, src, src_stride, alpha, alpha_stride, height,
                   [=](Byte* to, const Byte* from, const Byte* weights)
                       PXB_INLINE_LAMBDA { BlendRow<kBytes>(to, from, weights, width); });
    BlendWidths().Leave();
}

}  // namespace

void BlendRgb24(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                const Byte* alpha, std::int32_t alpha_stride, std::int32_t width,
                std::int32_t height) {
    BlendPacked<3>(dst, dst_stride, src, src_stride, alpha, alpha_stride, width, height);
}

void BlendRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                const Byte* alpha, std::int32_t alpha_stride, std::int32_t width,
                std::int32_t height) {
    BlendPacked<4>(dst, dst_stride, src, src_stride, alpha, alpha_stride, width, height);
}

void BlendYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
               const Byte* alpha, std::int32_t alpha_stride, std::int32_t width,
               std::int32_t height) {
    BlendPacked<2>(dst, dst_stride, src, src_stride, alpha, alpha_stride, width, height);
}

void BlendRgb32ByOwnAlpha(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(
        dst, dst_stride, src, src_stride, height,
        [=](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
            BlendWidths().ForPixelsInPlace(width, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                BlendPixels<V, 4>(to + 4 * x, from + 4 * x, [=]<int kPart>() PXB_INLINE_LAMBDA {
                    return V::template LoadWeightsOfX<kPart>(from + 4 * x);
                });
            });
        });
    BlendWidths().Leave();
}

void BlendYuv420(const BlendPlanes& dst, const BlendPlanes& src, const Byte* alpha,
                 std::int32_t alpha_stride, std::int32_t width, std::int32_t height) {
    ForRowsOf420(
        dst, src, alpha, alpha_stride, width, height,
        [](Byte* to, const Byte* from, const Byte* weights, std::ptrdiff_t count)
            PXB_INLINE_LAMBDA { BlendRow<1>(to, from, weights, count); },
        [](Byte* to0, Byte* to1, const Byte* from0, const Byte* from1, const Byte* weights,
           std::ptrdiff_t count) PXB_INLINE_LAMBDA {
            BlendWidths().ForPixelsInPlace(count, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                const auto shared = V::WeightsOf(V::LoadEvens(weights + 2 * x));
                V::Store(to0 + x, V::Lerp(V::Load(to0 + x), V::Load(from0 + x), shared));
                V::Store(to1 + x, V::Lerp(V::Load(to1 + x), V::Load(from1 + x), shared));
            });
        });
    BlendWidths().Leave();
}

}  // namespace pxb::PXB_TARGET
