// Colour arithmetic of one or two pixels in plain integers. A lane holds more than 16 bits, which is
// why AddSaturated need not saturate here: kernels clamp what saturation would have cut off.
#pragma once
#include "convert/simd/lanes.h"
#include "core/simd/scalar.h"

namespace pxb::PXB_TARGET {

template <class V, int kBytesPerPixel>
struct ToRgb;
template <class V>
struct ToYuv;

template <int kCount, int kBytesPerPixel>
struct ToRgb<Scalar<kCount>, kBytesPerPixel> {
    using Lanes = int;
    struct Samples {
        int even, odd;
    };
    struct Uv {
        int u, v;
    };
    using Weights = Uv;
    struct Packed {
        Samples low, high;
        Uv uv_low, uv_high;
    };
    struct Bytes {
        Byte low, high;
    };

    static PXB_INLINE Lanes Set(int value) { return value; }
    static PXB_INLINE Lanes Factor(int value) { return value; }
    static PXB_INLINE Weights FactorU(int u) { return {u, 0}; }
    static PXB_INLINE Weights FactorV(int v) { return {0, v}; }
    static PXB_INLINE Weights FactorUv(int u, int v) { return {u, v}; }

    static PXB_INLINE Samples LoadLuma(const Byte* src) { return {src[0], src[1]}; }
    static PXB_INLINE Uv LoadUv(const Byte* u, const Byte* v) { return {*u - 128, *v - 128}; }
    static PXB_INLINE Uv LoadUv(const Byte* uv) { return LoadUv(uv, uv + 1); }
    static PXB_INLINE Packed LoadYuy2(const Byte* src) {
        const Uv uv = LoadUv(src + 1, src + 3);
        return {LoadLuma(src), LoadLuma(src + 2), uv, uv};
    }
    static PXB_INLINE Packed LoadAyuv(const Byte* src) {
        const Byte* const last = src + 4 * (kCount - 1);
        return {LoadLuma(src), LoadLuma(last), LoadUv(src + 2), LoadUv(last + 2)};
    }

    static PXB_INLINE Lanes Weigh(Uv uv, Weights weights) {
        return uv.u * weights.u + uv.v * weights.v;
    }
    static PXB_INLINE Lanes MulEven(Samples a, Lanes factor) { return a.even * factor; }
    static PXB_INLINE Lanes MulOdd(Samples a, Lanes factor) { return a.odd * factor; }
    static PXB_INLINE Lanes Add(Lanes a, Lanes b) { return a + b; }
    static PXB_INLINE Lanes Sub(Lanes a, Lanes b) { return a - b; }
    static PXB_INLINE Lanes AddSaturated(Lanes a, Lanes b) { return a + b; }
    template <int kBits>
    static PXB_INLINE Lanes ShiftRight(Lanes a) {
        return a >> kBits;
    }

    static PXB_INLINE Bytes Join(Lanes even, Lanes odd) { return {Clamp(even), Clamp(odd)}; }
    static PXB_INLINE Bytes Narrow(Lanes low, Lanes high) { return {Clamp(low), Clamp(high)}; }
    static PXB_INLINE void Store(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StorePixel(dst, b.low, g.low, r.low);
        StorePixel(dst + kBytesPerPixel, b.high, g.high, r.high);
    }
    template <class Channels>
    static PXB_INLINE void StoreBgra(Byte* dst, const Channels& low, const Channels& high,
                                     const Packed& ayuv) {
        StorePixel(dst, Clamp(low.blue), Clamp(low.green), Clamp(low.red));
        dst[3] = static_cast<Byte>(ayuv.low.even);
        if (kCount == 1) return;
        StorePixel(dst + 4, Clamp(high.blue), Clamp(high.green), Clamp(high.red));
        dst[7] = static_cast<Byte>(ayuv.high.even);
    }

  private:
    static PXB_INLINE Byte Clamp(int a) { return static_cast<Byte>(a < 0 ? 0 : a > 255 ? 255 : a); }
    static PXB_INLINE void StorePixel(Byte* dst, Byte b, Byte g, Byte r) {
        dst[0] = b;
        dst[1] = g;
        dst[2] = r;
        if (kBytesPerPixel == 4) dst[3] = 0;
    }
};

template <int kCount>
struct ToYuv<Scalar<kCount>> : InOrderOf<Scalar<kCount>> {
    using V = Scalar<kCount>;
    using Bytes = typename V::Bytes;
    using Pixels = typename V::Pixels;
    struct Sums {
        int at[kCount];
    };

    template <int kBytesPerPixel>
    static PXB_INLINE Pixels Load(const Byte* src) {
        return kBytesPerPixel == 3 ? V::LoadBgr(src) : V::LoadBgrx(src);
    }
    template <int kB, int kG, int kR, int kOffset>
    static PXB_INLINE Bytes Weigh(const Pixels& a) {
        Bytes bytes;
        for (int i = 0; i < kCount; ++i) bytes.at[i] = (Sum<kB, kG, kR>(a.at[i]) >> 8) + kOffset;
        return bytes;
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE int WeighPairs(const Pixels& a) {
        return SumOfPair<kB, kG, kR>(a) >> 8;
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE int WeighPairs(const Pixels& a, const Pixels& b) {
        return (SumOfPair<kB, kG, kR>(a) + SumOfPair<kB, kG, kR>(b)) >> 9;
    }
    static PXB_INLINE Bytes PairUp(int u, int v) {
        static_assert(kCount == 2);
        return {{u + 128, v + 128}};
    }

    template <int kB, int kG, int kR>
    static PXB_INLINE Sums WeighEach(const Pixels& a) {
        Sums sums;
        for (int i = 0; i < kCount; ++i) sums.at[i] = Sum<kB, kG, kR>(a.at[i]);
        return sums;
    }
    template <int kLumaOffset>
    static PXB_INLINE void StoreAyuv(Byte* dst, const Pixels& alpha, const Sums& y, const Sums& u,
                                     const Sums& v) {
        for (int i = 0; i < kCount; ++i) {
            dst[4 * i] = alpha.at[i][3];
            dst[4 * i + 1] = static_cast<Byte>((y.at[i] >> 8) + kLumaOffset);
            dst[4 * i + 2] = static_cast<Byte>((u.at[i] >> 8) + 128);
            dst[4 * i + 3] = static_cast<Byte>((v.at[i] >> 8) + 128);
        }
    }

  private:
    template <int kB, int kG, int kR>
    static PXB_INLINE int Sum(const Byte (&bgrx)[4]) {
        return kB * bgrx[0] + kG * bgrx[1] + kR * bgrx[2];
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE int SumOfPair(const Pixels& a) {
        static_assert(kCount == 2);
        return Sum<kB, kG, kR>(a.at[0]) + Sum<kB, kG, kR>(a.at[1]);
    }
};

}  // namespace pxb::PXB_TARGET
