// YUV to RGB in 6-bit fixed point, in signed 16-bit lanes.
//
//     y = 74 (Y - 16)    B = (y + 129 u) >> 6    G = (y - 25 u - 52 v) >> 6    R = (y + 102 v) >> 6
//
// with u = U - 128, v = V - 128. Only the sum of blue can leave 16 bits; it saturates, which the
// final clamp to 0..255 hides. In planar layouts chroma is one lane for two pixels and goes to the
// even and the odd ones; in YUY2 it is spread over its pixels at once.
#include "convert/drifting_rows.h"
#include "convert/simd/color.h"
#include "convert/yuv_to_rgb.h"

namespace pxb::PXB_TARGET {
namespace {

template <class C>
struct Coefficients {
    typename C::Lanes luma = C::Factor(74), black = C::Set(74 * 16);
    decltype(C::FactorU(0)) blue = C::FactorU(129);
    decltype(C::FactorUv(0, 0)) green = C::FactorUv(25, 52);
    decltype(C::FactorV(0)) red = C::FactorV(102);
};

template <int kBytesPerPixel, class... V>
struct CoefficientsForAll : Coefficients<ToRgb<V, kBytesPerPixel>>... {};
template <int kBytesPerPixel>
using AllCoefficients = CoefficientsForAll<kBytesPerPixel, PXB_WIDTHS>;

// What chroma adds to y in each channel (green: takes off).
template <class C>
struct Chroma {
    PXB_INLINE Chroma(typename C::Uv uv, const Coefficients<C>& k)
        : blue(C::Weigh(uv, k.blue)), green(C::Weigh(uv, k.green)), red(C::Weigh(uv, k.red)) {}
    typename C::Lanes blue, green, red;
};

// Chroma that goes to several lanes of luma takes the offset of y upon itself: one operation less.
template <class C>
PXB_INLINE Chroma<C> LessBlack(Chroma<C> chroma, const Coefficients<C>& k) {
    chroma.blue = C::Sub(chroma.blue, k.black);
    chroma.green = C::Add(chroma.green, k.black);
    chroma.red = C::Sub(chroma.red, k.black);
    return chroma;
}

template <class C>
struct Channels {
    typename C::Lanes blue, green, red;
};

template <class C>
PXB_INLINE Channels<C> Shade(typename C::Lanes y, const Chroma<C>& chroma) {
    return {C::template ShiftRight<6>(C::AddSaturated(y, chroma.blue)),
            C::template ShiftRight<6>(C::Sub(y, chroma.green)),
            C::template ShiftRight<6>(C::Add(y, chroma.red))};
}

// The pixels of one row, of which `y_even` and `y_odd` are every second one.
template <class C>
PXB_INLINE void ShadePlanar(Byte* dst, typename C::Lanes y_even, typename C::Lanes y_odd,
                            const Chroma<C>& chroma) {
    const auto even = Shade<C>(y_even, chroma), odd = Shade<C>(y_odd, chroma);
    C::Store(dst, C::Join(even.blue, odd.blue), C::Join(even.green, odd.green),
             C::Join(even.red, odd.red));
}

// For chroma less black.
template <class C>
PXB_INLINE void ShadeRowOf420(Byte* dst, const Byte* y, const Chroma<C>& chroma,
                              const Coefficients<C>& k) {
    const auto luma = C::LoadLuma(y);
    ShadePlanar<C>(dst, C::MulEven(luma, k.luma), C::MulOdd(luma, k.luma), chroma);
}

template <class C>
PXB_INLINE void ShadeRowOf422(Byte* dst, const Byte* y, const Chroma<C>& chroma,
                              const Coefficients<C>& k) {
    const auto luma = C::LoadLuma(y);
    ShadePlanar<C>(dst, C::Sub(C::MulEven(luma, k.luma), k.black),
                   C::Sub(C::MulOdd(luma, k.luma), k.black), chroma);
}

template <class C>
PXB_INLINE Channels<C> ShadePacked(typename C::Lanes luma, typename C::Uv uv,
                                   const Coefficients<C>& k) {
    return Shade<C>(C::Sub(luma, k.black), Chroma<C>(uv, k));
}

template <class C>
PXB_INLINE void ShadeYuy2(Byte* dst, const Byte* src, const Coefficients<C>& k) {
    const auto yuy2 = C::LoadYuy2(src);
    const auto low = ShadePacked<C>(C::MulEven(yuy2.low, k.luma), yuy2.uv_low, k);
    const auto high = ShadePacked<C>(C::MulEven(yuy2.high, k.luma), yuy2.uv_high, k);
    C::Store(dst, C::Narrow(low.blue, high.blue), C::Narrow(low.green, high.green),
             C::Narrow(low.red, high.red));
}

template <class C>
PXB_INLINE void ShadeAyuv(Byte* dst, const Byte* src, const Coefficients<C>& k) {
    const auto ayuv = C::LoadAyuv(src);
    const auto low = ShadePacked<C>(C::MulOdd(ayuv.low, k.luma), ayuv.uv_low, k);
    const auto high = ShadePacked<C>(C::MulOdd(ayuv.high, k.luma), ayuv.uv_high, k);
    C::StoreBgra(dst, low, high, ayuv);
}

// Where planar chroma comes from: two planes, or one of pairs U V.
struct TwoPlanes {
    template <class C>
    static PXB_INLINE typename C::Uv Load(const Byte* u, const Byte* v, std::ptrdiff_t x) {
        return C::LoadUv(u + x / 2, v + x / 2);
    }
};

struct OnePlane {
    template <class C>
    static PXB_INLINE typename C::Uv Load(const Byte* uv, const Byte*, std::ptrdiff_t x) {
        return C::LoadUv(uv + x);
    }
};

template <int kBytesPerPixel, class Source>
PXB_INLINE void Convert420(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                           const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                           std::int32_t width, std::int32_t height) {
    const AllCoefficients<kBytesPerPixel> k;
    const Writer write(width, height);
    ForRowPairsOfPackedAnd420<kBytesPerPixel>(
        dst, dst_stride, y, u, v, y_stride, chroma_stride, width, height,
        [&](Byte* dst0, Byte* dst1, const Byte* y0, const Byte* y1, const Byte* pu,
            const Byte* pv) PXB_INLINE_LAMBDA {
            write.To(dst0, dst1).ForPairs(width, [&]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                using C = ToRgb<V, kBytesPerPixel>;
                const Chroma<C> less =
                    LessBlack<C>(Chroma<C>(Source::template Load<C>(pu, pv, x), k), k);
                ShadeRowOf420<C>(dst0 + kBytesPerPixel * x, y0 + x, less, k);
                ShadeRowOf420<C>(dst1 + kBytesPerPixel * x, y1 + x, less, k);
            });
        });
}

// Of each row only the first `end` pixels.
template <int kBytesPerPixel>
PXB_INLINE void ConvertYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src,
                            std::int32_t src_stride, std::int32_t width, std::int32_t height,
                            std::int32_t end) {
    const AllCoefficients<kBytesPerPixel> k;
    const Writer write(width, height);
    ForDriftingRows<kBytesPerPixel, 2>(
        dst, dst_stride, src, src_stride, width, height,
        [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
            write.To(to).ForPairs(end, [&]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                ShadeYuy2<ToRgb<V, kBytesPerPixel>>(to + kBytesPerPixel * x, from + 2 * x, k);
            });
        });
}

}  // namespace

void ConvertYuv420ToRgb24(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                          const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                          std::int32_t width, std::int32_t height) {
    Convert420<3, TwoPlanes>(dst, dst_stride, y, u, v, y_stride, chroma_stride, width, height);
}

void ConvertYuv420ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                          const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                          std::int32_t width, std::int32_t height) {
    Convert420<4, TwoPlanes>(dst, dst_stride, y, u, v, y_stride, chroma_stride, width, height);
}

void ConvertNv12ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* uv,
                        std::int32_t y_stride, std::int32_t uv_stride, std::int32_t width,
                        std::int32_t height) {
    Convert420<4, OnePlane>(dst, dst_stride, y, uv, uv, y_stride, uv_stride, width, height);
}

// Callers may convert in place.
void ConvertAyuv32ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    const AllCoefficients<4> k;
    const Writer write(0, 0);
    ForRows(dst, dst_stride, src, src_stride, height,
            [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                const auto convert = [&]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                    ShadeAyuv<ToRgb<V, 4>>(to + 4 * x, from + 4 * x, k);
                };
                write.To(to).ForPixelsInPlace(width, convert);
            });
}

void ConvertYuy2ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                        std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ConvertYuy2<4>(dst, dst_stride, src, src_stride, width, height, width);
}

void ConvertYuy2RunToRgb24(Byte* dst, std::int32_t dst_stride, const Byte* src,
                           std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ConvertYuy2<3>(dst, dst_stride, src, src_stride, width, height, width / 16 * 16);
}

void ConvertYuv422ToRgb24(std::int32_t width, Byte* dst, std::int32_t dst_stride, const Byte* y,
                          std::int32_t y_stride, const Byte* u, const Byte* v,
                          std::int32_t chroma_advance, std::int32_t height) {
    const AllCoefficients<3> k;
    const Writer write(width, height);
    ForRowsOf422<3>(
        width, dst, dst_stride, y, y_stride, u, v, chroma_advance, height,
        [&](Byte* to, const Byte* py, const Byte* pu, const Byte* pv) PXB_INLINE_LAMBDA {
            write.To(to).ForPairs(width, [&]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                using C = ToRgb<V, 3>;
                const Chroma<C> chroma(C::LoadUv(pu + x / 2, pv + x / 2), k);
                ShadeRowOf422<C>(to + 3 * x, py + x, chroma, k);
            });
        });
}

}  // namespace pxb::PXB_TARGET
