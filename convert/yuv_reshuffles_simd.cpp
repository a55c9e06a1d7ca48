// YUV reshuffles, the same bytes as the plain kernels.
#include "convert/drifting_rows.h"
#include "convert/yuv_reshuffles.h"
#include "core/simd/wide.h"

namespace pxb::PXB_TARGET {
namespace {

// The functions below move the pixels from x on, as many as fit before `end`, and return where they
// stopped.
template <class V>
PXB_INLINE int MergeRowPair(Byte* dst0, Byte* dst1, const Byte* y0, const Byte* y1, const Byte* u,
                            const Byte* v, int x, int end) {
    for (; x + V::kPixels <= end; x += V::kPixels) {
        const auto pairs = V::LoadPairs(u + x / 2, v + x / 2);
        V::StoreYuy2(dst0 + 2 * x, V::Load(y0 + x), pairs);
        V::StoreYuy2(dst1 + 2 * x, V::Load(y1 + x), pairs);
    }
    return x;
}

template <class V>
PXB_INLINE int SplitRowPair(Byte* y0, Byte* y1, Byte* u, Byte* v, const Byte* src0,
                            const Byte* src1, int x, int end) {
    for (; x + V::kPixels <= end; x += V::kPixels) {
        const auto top_low = V::Load(src0 + 2 * x), top_high = V::Load(src0 + 2 * x + V::kPixels);
        const auto low = V::Load(src1 + 2 * x), high = V::Load(src1 + 2 * x + V::kPixels);
        V::Store(y0 + x, V::Evens(top_low, top_high));
        V::Store(y1 + x, V::Evens(low, high));
        V::StorePairs(u + x / 2, v + x / 2,
                      V::Odds(V::Average(top_low, low), V::Average(top_high, high)));
    }
    return x;
}

template <class V>
PXB_INLINE std::ptrdiff_t SplitRun(Byte* y, Byte* u, Byte* v, const Byte* src, std::ptrdiff_t x,
                                   std::ptrdiff_t end) {
    for (; x + V::kPixels <= end; x += V::kPixels) {
        const auto low = V::Load(src + 2 * x), high = V::Load(src + 2 * x + V::kPixels);
        V::Store(y + x, V::Evens(low, high));
        V::StorePairs(u + x / 2, v + x / 2, V::Odds(low, high));
    }
    return x;
}

template <class V>
PXB_INLINE std::ptrdiff_t MergeRun(Byte* dst, const Byte* y, const Byte* u, const Byte* v,
                                   std::ptrdiff_t x, std::ptrdiff_t end) {
    for (; x + V::kPixels <= end; x += V::kPixels)
        V::StoreYuy2(dst + 2 * x, V::Load(y + x), V::LoadPairs(u + x / 2, v + x / 2));
    return x;
}

}  // namespace

void ConvertYuv420ToYuy2(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                         const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                         std::int32_t width, std::int32_t height) {
    ForRowPairsOfPackedAnd420<2>(
        dst, dst_stride, y, u, v, y_stride, chroma_stride, EvenWidth(width), height,
        [=](Byte* d0, Byte* d1, const Byte* y0, const Byte* y1, const Byte* pu, const Byte* pv)
            PXB_INLINE_LAMBDA {
                const int x = MergeRowPair<Wide>(d0, d1, y0, y1, pu, pv, 0, width);
                MergeRowPair<Pair>(d0, d1, y0, y1, pu, pv, x, width);
            });
    Wide::Leave();
}

void ConvertYuy2ToYuv420(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                         std::int32_t chroma_stride, const Byte* src, std::int32_t src_stride,
                         std::int32_t width, std::int32_t height) {
    ForRowPairsOfPackedAnd420<2>(
        src, src_stride, y, u, v, y_stride, chroma_stride, EvenWidth(width), height,
        [=](const Byte* s0, const Byte* s1, Byte* y0, Byte* y1, Byte* pu, Byte* pv)
            PXB_INLINE_LAMBDA {
                const int x = SplitRowPair<Wide>(y0, y1, pu, pv, s0, s1, 0, width);
                SplitRowPair<Pair>(y0, y1, pu, pv, s0, s1, x, width);
            });
    Wide::Leave();
}

void ConvertYuy2ToYuv422(Byte* y, Byte* u, Byte* v, const Byte* yuy2, std::int32_t height,
                         std::int32_t half_width) {
    const std::ptrdiff_t pixels = std::ptrdiff_t{2} * height * half_width;
    const std::ptrdiff_t x = SplitRun<Wide>(y, u, v, yuy2, 0, pixels);
    SplitRun<Pair>(y, u, v, yuy2, x, pixels);
    Wide::Leave();
}

void ConvertYuv422ToYuy2(const Byte* y, const Byte* u, const Byte* v, Byte* yuy2,
                         std::int32_t height, std::int32_t half_width) {
    const std::ptrdiff_t pixels = std::ptrdiff_t{2} * height * half_width;
    const std::ptrdiff_t x = MergeRun<Wide>(yuy2, y, u, v, 0, pixels);
    MergeRun<Pair>(yuy2, y, u, v, x, pixels);
    Wide::Leave();
}

}  // namespace pxb::PXB_TARGET
