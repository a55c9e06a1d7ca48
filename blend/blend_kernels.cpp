// Blending in plain code.
#include "blend/blend_kernels.h"

#include "blend/blend_rows.h"

namespace pxb::plain {
namespace {

PXB_INLINE Byte Blend(Byte d, Byte s, Byte alpha) {
    return static_cast<Byte>(((256 - alpha) * d + alpha * s) >> 8);
}

// The first kBlended bytes of pixels of kBytes bytes. The alpha of pixel x is alpha[x * alpha_step].
template <int kBytes, int kBlended = kBytes>
PXB_INLINE void BlendRow(Byte* dst, const Byte* src, const Byte* alpha, std::ptrdiff_t alpha_step,
                         std::ptrdiff_t width) {
    for (; width > 0; --width, dst += kBytes, src += kBytes, alpha += alpha_step)
        for (int i = 0; i < kBlended; ++i) dst[i] = Blend(dst[i], src[i], *alpha);
}

}  // namespace

void BlendRgb24(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                const Byte* alpha, std::int32_t alpha_stride, std::int32_t width,
                std::int32_t height) {
    ForBlendedRows(dst, dst_stride, src, src_stride, alpha, alpha_stride, height,
                   [=](Byte* to, const Byte* from, const Byte* weights) {
                       BlendRow<3>(to, from, weights, 1, width);
                   });
}

void BlendRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                const Byte* alpha, std::int32_t alpha_stride, std::int32_t width,
                std::int32_t height) {
    ForBlendedRows(dst, dst_stride, src, src_stride, alpha, alpha_stride, height,
                   [=](Byte* to, const Byte* from, const Byte* weights) {
                       BlendRow<4, 3>(to, from, weights, 1, width);
                   });
}

void BlendRgb32ByOwnAlpha(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height,
            [=](Byte* to, const Byte* from) { BlendRow<4, 3>(to, from, from + 3, 4, width); });
}

void BlendYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
               const Byte* alpha, std::int32_t alpha_stride, std::int32_t width,
               std::int32_t height) {
    ForBlendedRows(dst, dst_stride, src, src_stride, alpha, alpha_stride, height,
                   [=](Byte* to, const Byte* from, const Byte* weights) {
                       BlendRow<2>(to, from, weights, 1, width);
                   });
}

void BlendYuv420(const BlendPlanes& dst, const BlendPlanes& src, const Byte* alpha,
                 std::int32_t alpha_stride, std::int32_t width, std::int32_t height) {
    ForRowsOf420(
        dst, src, alpha, alpha_stride, width, height,
        [](Byte* to, const Byte* from, const Byte* weights, std::ptrdiff_t count) {
            BlendRow<1>(to, from, weights, 1, count);
        },
        [](Byte* to0, Byte* to1, const Byte* from0, const Byte* from1, const Byte* weights,
           std::ptrdiff_t count) {
            BlendRow<1>(to0, from0, weights, 2, count);
            BlendRow<1>(to1, from1, weights, 2, count);
        });
}

}  // namespace pxb::plain
