// YUV to RGB in 6-bit fixed point, in signed 16-bit lanes.
//
//     y = 74 (Y - 16)    B = (y + 129 u) >> 6    G = (y - 25 u - 52 v) >> 6    R = (y + 102 v) >> 6
//
// with u = U - 128, v = V - 128. Only the sum of blue can leave 16 bits; it saturates, which the
// final clamp to 0..255 hides. In planar layouts chroma is one lane for two pixels and goes to the
// even and the odd ones; in YUY2 it is spread over its pixels at once.
#include "convert/drifting_rows.h"
#include "convert/yuv_to_rgb.h"
#include "core/simd/wide.h"

namespace pxb::PXB_TARGET {
namespace {

template <class V>
struct Coefficients {
    typename V::Words y = V::Factor(74), black = V::Set(74 * 16);
    decltype(V::FactorU(0)) blue = V::FactorU(129);
    decltype(V::FactorUv(0, 0)) green = V::FactorUv(25, 52);
    decltype(V::FactorV(0)) red = V::FactorV(102);
};

// What chroma adds to y in each channel (green: takes off).
template <class V>
struct Chroma {
    PXB_INLINE Chroma(typename V::Uv uv, const Coefficients<V>& k)
        : blue(V::Weigh(uv, k.blue)), green(V::Weigh(uv, k.green)), red(V::Weigh(uv, k.red)) {}
    typename V::Words blue, green, red;
};

template <class V>
struct Bgr {
    static constexpr int kBytes = 3;
    static PXB_INLINE void Store(Byte* dst, typename V::Bytes b, typename V::Bytes g,
                                 typename V::Bytes r) {
        V::StoreBgr(dst, b, g, r);
    }
};

template <class V>
struct Bgr0 {
    static constexpr int kBytes = 4;
    static PXB_INLINE void Store(Byte* dst, typename V::Bytes b, typename V::Bytes g,
                                 typename V::Bytes r) {
        V::StoreBgr0(dst, b, g, r);
    }
};

template <class V>
struct Channels {
    typename V::Words blue, green, red;
};

template <class V>
PXB_INLINE Channels<V> Shade(typename V::Words luma, const Chroma<V>& chroma,
                             const Coefficients<V>& k) {
    const auto y = V::Sub(luma, k.black);
    return {V::template ShiftRight<6>(V::AddSaturated(y, chroma.blue)),
            V::template ShiftRight<6>(V::Sub(y, chroma.green)),
            V::template ShiftRight<6>(V::Add(y, chroma.red))};
}

// V::kPixels pixels of one row.
template <class V, class Store>
PXB_INLINE void ShadePlanar(Byte* dst, const Byte* y, const Chroma<V>& chroma,
                            const Coefficients<V>& k) {
    const auto luma = V::template LoadFor<Store::kBytes>(y);
    const auto even = Shade<V>(V::MulEven(luma, k.y), chroma, k);
    const auto odd = Shade<V>(V::MulOdd(luma, k.y), chroma, k);
    Store::Store(dst, V::Join(even.blue, odd.blue), V::Join(even.green, odd.green),
                 V::Join(even.red, odd.red));
}

template <class V, class Store>
PXB_INLINE void ShadeYuy2(Byte* dst, const Byte* src, const Coefficients<V>& k) {
    const auto yuy2 = V::template LoadYuy2For<Store::kBytes>(src);
    const auto low = Shade<V>(V::MulEven(yuy2.low, k.y), Chroma<V>(yuy2.uv_low, k), k);
    const auto high = Shade<V>(V::MulEven(yuy2.high, k.y), Chroma<V>(yuy2.uv_high, k), k);
    Store::Store(dst, V::Narrow(low.blue, high.blue), V::Narrow(low.green, high.green),
                 V::Narrow(low.red, high.red));
}

// Where planar chroma comes from: two planes, or one of pairs U V.
struct TwoPlanes {
    template <class V>
    static PXB_INLINE typename V::Bytes Load(const Byte* u, const Byte* v, int x) {
        return V::LoadPairs(u + x / 2, v + x / 2);
    }
};

struct OnePlane {
    template <class V>
    static PXB_INLINE typename V::Bytes Load(const Byte* uv, const Byte*, int x) {
        return V::Load(uv + x);
    }
};

// The functions below convert the pixels from x on, as many as fit before `end`, and return where
// they stopped.
template <class V, template <class> class Store, class Source>
PXB_INLINE int ConvertRowPair(Byte* dst0, Byte* dst1, const Byte* y0, const Byte* y1, const Byte* u,
                              const Byte* v, int x, int end, const Coefficients<V>& k) {
    for (; x + V::kPixels <= end; x += V::kPixels) {
        const Chroma<V> chroma(
            V::template UvFor<Store<V>::kBytes>(Source::template Load<V>(u, v, x)), k);
        ShadePlanar<V, Store<V>>(dst0 + Store<V>::kBytes * x, y0 + x, chroma, k);
        ShadePlanar<V, Store<V>>(dst1 + Store<V>::kBytes * x, y1 + x, chroma, k);
    }
    return x;
}

template <class V, template <class> class Store>
PXB_INLINE int ConvertYuy2Row(Byte* dst, const Byte* src, int x, int end,
                              const Coefficients<V>& k) {
    for (; x + V::kPixels <= end; x += V::kPixels)
        ShadeYuy2<V, Store<V>>(dst + Store<V>::kBytes * x, src + 2 * x, k);
    return x;
}

template <class V, template <class> class Store>
PXB_INLINE int Convert422Row(Byte* dst, const Byte* y, const Byte* u, const Byte* v, int x, int end,
                             const Coefficients<V>& k) {
    for (; x + V::kPixels <= end; x += V::kPixels)
        ShadePlanar<V, Store<V>>(
            dst + Store<V>::kBytes * x, y + x,
            Chroma<V>(V::template UvFor<Store<V>::kBytes>(V::LoadPairs(u + x / 2, v + x / 2)), k),
            k);
    return x;
}

template <template <class> class Store, class Source>
PXB_INLINE void Convert420(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                           const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                           std::int32_t width, std::int32_t height) {
    const Coefficients<Wide> wide;
    const Coefficients<Pair> pair;
    ForRowPairsOfPackedAnd420<Store<Wide>::kBytes>(
        dst, dst_stride, y, u, v, y_stride, chroma_stride, width, height,
        [&](Byte* dst0, Byte* dst1, const Byte* y0, const Byte* y1, const Byte* pu, const Byte* pv)
            PXB_INLINE_LAMBDA {
                const int x =
                    ConvertRowPair<Wide, Store, Source>(dst0, dst1, y0, y1, pu, pv, 0, width, wide);
                ConvertRowPair<Pair, Store, Source>(dst0, dst1, y0, y1, pu, pv, x, width, pair);
            });
    Wide::Leave();
}

}  // namespace

void ConvertYuv420ToRgb24(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                          const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                          std::int32_t width, std::int32_t height) {
    Convert420<Bgr, TwoPlanes>(dst, dst_stride, y, u, v, y_stride, chroma_stride, width, height);
}

void ConvertYuv420ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                          const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                          std::int32_t width, std::int32_t height) {
    Convert420<Bgr0, TwoPlanes>(dst, dst_stride, y, u, v, y_stride, chroma_stride, width, height);
}

void ConvertNv12ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* uv,
                        std::int32_t y_stride, std::int32_t uv_stride, std::int32_t width,
                        std::int32_t height) {
    Convert420<Bgr0, OnePlane>(dst, dst_stride, y, uv, uv, y_stride, uv_stride, width, height);
}

// One pixel at a time in plain integers, which the compiler spreads over the registers of the
// build.
void ConvertAyuv32ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    const Coefficients<Pair> k;
    ForRows(dst, dst_stride, src, src_stride, height,
            [=](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                for (std::int32_t x = 0; x < width; ++x, to += 4, from += 4) {
                    const Chroma<Pair> chroma(Pair::UvFor<0>({from[2], from[3]}), k);
                    const auto pixel = Shade<Pair>(Pair::MulEven({from[1], 0}, k.y), chroma, k);
                    Pair::Store(to, Pair::Narrow(pixel.blue, pixel.green));
                    Pair::Store(to + 2, {Pair::Narrow(pixel.red, 0).even, from[0]});
                }
            });
}

void ConvertYuy2ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                        std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    const Coefficients<Wide> wide;
    const Coefficients<Pair> pair;
    ForDriftingRows<4, 2>(dst, dst_stride, src, src_stride, width, height,
                          [&](Byte* d, const Byte* s) PXB_INLINE_LAMBDA {
                              const int x = ConvertYuy2Row<Wide, Bgr0>(d, s, 0, width, wide);
                              ConvertYuy2Row<Pair, Bgr0>(d, s, x, width, pair);
                          });
    Wide::Leave();
}

void ConvertYuy2RowToRgb24(Byte* dst, const Byte* src, std::int32_t width) {
    const int x = ConvertYuy2Row<Wide, Bgr>(dst, src, 0, width, Coefficients<Wide>());
    ConvertYuy2Row<Pair, Bgr>(dst, src, x, width, Coefficients<Pair>());
    Wide::Leave();
}

void ConvertYuv422ToRgb24(std::int32_t width, Byte* dst, std::int32_t dst_stride, const Byte* y,
                          std::int32_t y_stride, const Byte* u, const Byte* v,
                          std::int32_t chroma_advance, std::int32_t height) {
    const Coefficients<Wide> wide;
    const Coefficients<Pair> pair;
    ForRowsOf422<3>(width, dst, dst_stride, y, y_stride, u, v, chroma_advance, height,
                    [&](Byte* d, const Byte* py, const Byte* pu, const Byte* pv) PXB_INLINE_LAMBDA {
                        const int x = Convert422Row<Wide, Bgr>(d, py, pu, pv, 0, width, wide);
                        Convert422Row<Pair, Bgr>(d, py, pu, pv, x, width, pair);
                    });
    Wide::Leave();
}

}  // namespace pxb::PXB_TARGET
