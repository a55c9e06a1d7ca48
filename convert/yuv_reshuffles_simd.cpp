// YUV reshuffles, the same bytes as the plain kernels.
#include "convert/drifting_rows.h"
#include "convert/yuv_reshuffles.h"
#include "core/simd/writer.h"

namespace pxb::PXB_TARGET {

void ConvertYuv420ToYuy2(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                         const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                         std::int32_t width, std::int32_t height) {
    const Writer write(width, height);
    ForRowPairsOfPackedAnd420<2>(
        dst, dst_stride, y, u, v, y_stride, chroma_stride, EvenWidth(width), height,
        [&](Byte* d0, Byte* d1, const Byte* y0, const Byte* y1, const Byte* pu, const Byte* pv)
            PXB_INLINE_LAMBDA {
                write.To(d0, d1).ForPairs(width, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                    const auto pairs = V::LoadPairs(pu + x / 2, pv + x / 2);
                    V::StoreInTurn(d0 + 2 * x, V::Load(y0 + x), pairs);
                    V::StoreInTurn(d1 + 2 * x, V::Load(y1 + x), pairs);
                });
            });
}

void ConvertYuy2ToYuv420(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                         std::int32_t chroma_stride, const Byte* src, std::int32_t src_stride,
                         std::int32_t width, std::int32_t height) {
    const Writer write(width, height);
    ForRowPairsOfPackedAnd420<2>(
        src, src_stride, y, u, v, y_stride, chroma_stride, EvenWidth(width), height,
        [&](const Byte* s0, const Byte* s1, Byte* y0, Byte* y1, Byte* pu, Byte* pv)
            PXB_INLINE_LAMBDA {
                write.To(y0, y1, pu, pv)
                    .ForPairs(width, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                        const auto low0 = V::Load(s0 + 2 * x), low1 = V::Load(s1 + 2 * x);
                        const auto high0 = V::Load(s0 + 2 * x + V::kPixels);
                        const auto high1 = V::Load(s1 + 2 * x + V::kPixels);
                        V::Store(y0 + x, V::Evens(low0, high0));
                        V::Store(y1 + x, V::Evens(low1, high1));
                        V::StorePairs(pu + x / 2, pv + x / 2,
                                      V::Odds(V::Average(low0, low1), V::Average(high0, high1)));
                    });
            });
}

void ConvertYuy2ToYuv422(Byte* y, Byte* u, Byte* v, const Byte* yuy2, std::int32_t height,
                         std::int32_t half_width) {
    const std::ptrdiff_t pairs = std::ptrdiff_t{height} * half_width;
    const Writer write(2 * pairs, 1);
    write.To(y, u, v).ForPixels(pairs, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
        const auto load = [=](int i)
                              PXB_INLINE_LAMBDA { return V::Load(yuy2 + 4 * x + i * V::kPixels); };
        const auto a = load(0), b = load(1), c = load(2), d = load(3);
        V::Store(y + 2 * x, V::Evens(a, b));
        V::Store(y + 2 * x + V::kPixels, V::Evens(c, d));
        const auto low = V::Odds(a, b), high = V::Odds(c, d);
        V::Store(u + x, V::Evens(low, high));
        V::Store(v + x, V::Odds(low, high));
    });
}

void ConvertYuv422ToYuy2(const Byte* y, const Byte* u, const Byte* v, Byte* yuy2,
                         std::int32_t height, std::int32_t half_width) {
    const std::ptrdiff_t pixels = std::ptrdiff_t{2} * height * half_width;
    const Writer write(pixels, 1);
    write.To(yuy2).ForPairs(pixels, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
        V::StoreInTurn(yuy2 + 2 * x, V::Load(y + x), V::LoadPairs(u + x / 2, v + x / 2));
    });
}

}  // namespace pxb::PXB_TARGET
