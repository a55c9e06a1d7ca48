// YUV to RGB in 6-bit fixed point, in signed 16-bit lanes.
//
//     y = 74 (Y - 16)    B = (y + 129 u) >> 6    G = (y - 25 u - 52 v) >> 6    R = (y + 102 v) >> 6
//
// with u = U - 128, v = V - 128. Only the sum of blue can leave 16 bits; it saturates, which the
// final clamp to 0..255 hides. In planar layouts chroma is one lane for two pixels and goes to the
// even and the odd ones; in YUY2 it is spread over its pixels at once.
#include "convert/drifting_rows.h"
#include "convert/yuv_to_rgb.h"
#include "core/simd/writer.h"

namespace pxb::PXB_TARGET {
namespace {

template <class V>
struct Coefficients {
    typename V::Words luma = V::Factor(74), black = V::Set(74 * 16);
    decltype(V::FactorU(0)) blue = V::FactorU(129);
    decltype(V::FactorUv(0, 0)) green = V::FactorUv(25, 52);
    decltype(V::FactorV(0)) red = V::FactorV(102);
};

template <class... V>
struct CoefficientsForAll : Coefficients<V>... {};
using AllCoefficients = CoefficientsForAll<PXB_WIDTHS>;

// What chroma adds to y in each channel (green: takes off).
template <class V>
struct Chroma {
    PXB_INLINE Chroma(typename V::Uv uv, const Coefficients<V>& k)
        : blue(V::Weigh(uv, k.blue)), green(V::Weigh(uv, k.green)), red(V::Weigh(uv, k.red)) {}
    typename V::Words blue, green, red;
};

// Chroma that goes to several lanes of luma takes the offset of y upon itself: one operation less.
template <class V>
PXB_INLINE Chroma<V> LessBlack(Chroma<V> chroma, const Coefficients<V>& k) {
    chroma.blue = V::Sub(chroma.blue, k.black);
    chroma.green = V::Add(chroma.green, k.black);
    chroma.red = V::Sub(chroma.red, k.black);
    return chroma;
}

template <int kBytesPerPixel, class V, class Samples>
PXB_INLINE void StoreRgb(Byte* dst, Samples b, Samples g, Samples r) {
    if constexpr (kBytesPerPixel == 3)
        V::StoreBgr(dst, b, g, r);
    else
        V::StoreBgr0(dst, b, g, r);
}

template <class V>
struct Channels {
    typename V::Words blue, green, red;
};

template <class V>
PXB_INLINE Channels<V> Shade(typename V::Words y, const Chroma<V>& chroma) {
    return {V::template ShiftRight<6>(V::AddSaturated(y, chroma.blue)),
            V::template ShiftRight<6>(V::Sub(y, chroma.green)),
            V::template ShiftRight<6>(V::Add(y, chroma.red))};
}

// V::kPixels pixels of one row, of which `y_even` and `y_odd` are every second one.
template <int kBytesPerPixel, class V>
PXB_INLINE void ShadePlanar(Byte* dst, typename V::Words y_even, typename V::Words y_odd,
                            const Chroma<V>& chroma) {
    const auto even = Shade<V>(y_even, chroma), odd = Shade<V>(y_odd, chroma);
    StoreRgb<kBytesPerPixel, V>(dst, V::template Join<kBytesPerPixel>(even.blue, odd.blue),
                                V::template Join<kBytesPerPixel>(even.green, odd.green),
                                V::template Join<kBytesPerPixel>(even.red, odd.red));
}

// For chroma less black.
template <int kBytesPerPixel, class V>
PXB_INLINE void ShadeRowOf420(Byte* dst, const Byte* y, const Chroma<V>& chroma,
                              const Coefficients<V>& k) {
    const auto luma = V::template LoadFor<kBytesPerPixel>(y);
    ShadePlanar<kBytesPerPixel, V>(dst, V::MulEven(luma, k.luma), V::MulOdd(luma, k.luma), chroma);
}

template <int kBytesPerPixel, class V>
PXB_INLINE void ShadeRowOf422(Byte* dst, const Byte* y, const Chroma<V>& chroma,
                              const Coefficients<V>& k) {
    const auto luma = V::template LoadFor<kBytesPerPixel>(y);
    ShadePlanar<kBytesPerPixel, V>(dst, V::Sub(V::MulEven(luma, k.luma), k.black),
                                   V::Sub(V::MulOdd(luma, k.luma), k.black), chroma);
}

template <int kBytesPerPixel, class V>
PXB_INLINE void ShadeYuy2(Byte* dst, const Byte* src, const Coefficients<V>& k) {
    const auto yuy2 = V::template LoadYuy2For<kBytesPerPixel>(src);
    const auto y_low = V::Sub(V::MulEven(yuy2.low, k.luma), k.black);
    const auto y_high = V::Sub(V::MulEven(yuy2.high, k.luma), k.black);
    const auto low = Shade<V>(y_low, Chroma<V>(yuy2.uv_low, k));
    const auto high = Shade<V>(y_high, Chroma<V>(yuy2.uv_high, k));
    StoreRgb<kBytesPerPixel, V>(dst, V::template Narrow<kBytesPerPixel>(low.blue, high.blue),
                                V::template Narrow<kBytesPerPixel>(low.green, high.green),
                                V::template Narrow<kBytesPerPixel>(low.red, high.red));
}

// Where planar chroma comes from: two planes, or one of pairs U V.
struct TwoPlanes {
    template <int kBytesPerPixel, class V>
    static PXB_INLINE typename V::Bytes Load(const Byte* u, const Byte* v, std::ptrdiff_t x) {
        return V::template LoadPairsFor<kBytesPerPixel>(u + x / 2, v + x / 2);
    }
};

struct OnePlane {
    template <int kBytesPerPixel, class V>
    static PXB_INLINE typename V::Bytes Load(const Byte* uv, const Byte*, std::ptrdiff_t x) {
        return V::template LoadFor<kBytesPerPixel>(uv + x);
    }
};

template <int kBytesPerPixel, class Source>
PXB_INLINE void Convert420(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                           const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                           std::int32_t width, std::int32_t height) {
    const AllCoefficients k;
    const Writer write(width, height);
    ForRowPairsOfPackedAnd420<kBytesPerPixel>(
        dst, dst_stride, y, u, v, y_stride, chroma_stride, width, height,
        [&](Byte* dst0, Byte* dst1, const Byte* y0, const Byte* y1, const Byte* pu,
            const Byte* pv) PXB_INLINE_LAMBDA {
            write.To(dst0, dst1).ForPixels(width, [&]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                const auto pairs = Source::template Load<kBytesPerPixel, V>(pu, pv, x);
                const Chroma<V> less = LessBlack<V>(Chroma<V>(V::UvOf(pairs), k), k);
                ShadeRowOf420<kBytesPerPixel, V>(dst0 + kBytesPerPixel * x, y0 + x, less, k);
                ShadeRowOf420<kBytesPerPixel, V>(dst1 + kBytesPerPixel * x, y1 + x, less, k);
            });
        });
}

// Of each row only the first `end` pixels.
template <int kBytesPerPixel>
PXB_INLINE void ConvertYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src,
                            std::int32_t src_stride, std::int32_t width, std::int32_t height,
                            std::int32_t end) {
    const AllCoefficients k;
    const Writer write(width, height);
    ForDriftingRows<kBytesPerPixel, 2>(
        dst, dst_stride, src, src_stride, width, height,
        [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
            write.To(to).ForPixels(end, [&]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                ShadeYuy2<kBytesPerPixel, V>(to + kBytesPerPixel * x, from + 2 * x, k);
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

// One pixel at a time, each a 32-bit integer, which the compiler spreads over the registers of the
// build.
void ConvertAyuv32ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    const Coefficients<Pair> k;
    ForRows(dst, dst_stride, src, src_stride, height,
            [=](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                for (std::int32_t x = 0; x < width; ++x) {
                    std::uint32_t ayuv;
                    __builtin_memcpy(&ayuv, from + 4 * x, 4);
                    const auto byte = [=](int i) PXB_INLINE_LAMBDA {
                        return static_cast<int>(ayuv >> 8 * i & 0xFF);
                    };
                    const Chroma<Pair> chroma(Pair::UvOf({byte(2), byte(3)}), k);
                    const auto y = Pair::Sub(Pair::MulEven({byte(1), 0}, k.luma), k.black);
                    const auto pixel = Shade<Pair>(y, chroma);
                    const auto [b, g] = Pair::Narrow<4>(pixel.blue, pixel.green);
                    const auto [r, none] = Pair::Narrow<4>(pixel.red, 0);
                    const std::uint32_t bgra =
                        static_cast<std::uint32_t>(b | g << 8 | r << 16) | ayuv << 24;
                    __builtin_memcpy(to + 4 * x, &bgra, 4);
                }
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
    const AllCoefficients k;
    const Writer write(width, height);
    ForRowsOf422<3>(
        width, dst, dst_stride, y, y_stride, u, v, chroma_advance, height,
        [&](Byte* to, const Byte* py, const Byte* pu, const Byte* pv) PXB_INLINE_LAMBDA {
            write.To(to).ForPixels(width, [&]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                const auto pairs = V::template LoadPairsFor<3>(pu + x / 2, pv + x / 2);
                const Chroma<V> chroma(V::UvOf(pairs), k);
                ShadeRowOf422<3, V>(to + 3 * x, py + x, chroma, k);
            });
        });
}

}  // namespace pxb::PXB_TARGET
