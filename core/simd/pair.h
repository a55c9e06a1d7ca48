// Two pixels in plain integers. A lane holds more than 16 bits, which is why AddSaturated need
// not saturate here: kernels clamp what saturation would have cut off.
#pragma once
#include "core/rows.h"

namespace pxb::PXB_TARGET {

struct Pair {
    static constexpr bool kStreams = false;
    static constexpr int kPixels = 2;
    using Words = int;
    struct Bytes {
        int even, odd;
    };
    struct Pixels {
        Byte lanes[2][4];
    };
    using Rgb = Pixels;
    using Sums = Words;
    struct Uv {
        int u, v;
    };
    struct Weights {
        int u, v;
    };
    struct Yuy2 {
        Bytes low, high;
        Uv uv_low, uv_high;
    };

    static PXB_INLINE Words Set(int value) { return value; }
    static PXB_INLINE Words Factor(int value) { return value; }

    static PXB_INLINE Bytes Load(const Byte* src) { return {src[0], src[1]}; }
    template <int>
    static PXB_INLINE Bytes LoadFor(const Byte* src) {
        return Load(src);
    }
    template <int>
    static PXB_INLINE Bytes LoadPairsFor(const Byte* u, const Byte* v) {
        return {*u, *v};
    }
    static PXB_INLINE Uv UvOf(Bytes pairs) { return {pairs.even - 128, pairs.odd - 128}; }
    template <int>
    static PXB_INLINE Yuy2 LoadYuy2For(const Byte* src) {
        const Uv uv = UvOf(LoadPairsFor<0>(src + 1, src + 3));
        return {Load(src), Load(src + 2), uv, uv};
    }
    static PXB_INLINE Pixels LoadBgr(const Byte* src) {
        return {{{src[0], src[1], src[2], 0}, {src[3], src[4], src[5], 0}}};
    }
    static PXB_INLINE Pixels LoadBgrx(const Byte* src) {
        return {{{src[0], src[1], src[2], src[3]}, {src[4], src[5], src[6], src[7]}}};
    }

    template <int kBytesPerPixel>
    static PXB_INLINE Rgb LoadRgb(const Byte* src) {
        if constexpr (kBytesPerPixel == 3)
            return LoadBgr(src);
        else
            return LoadBgrx(src);
    }

    static PXB_INLINE void Store(Byte* dst, Bytes a) {
        dst[0] = static_cast<Byte>(a.even);
        dst[1] = static_cast<Byte>(a.odd);
    }
    static PXB_INLINE void StoreBgr(Byte* dst, const Pixels& a) { StorePixels<3>(dst, a); }
    static PXB_INLINE void StoreBgrx(Byte* dst, const Pixels& a) { StorePixels<4>(dst, a); }
    static PXB_INLINE void StoreBgr(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StorePixels<3>(dst, Interleave(b, g, r));
    }
    static PXB_INLINE void StoreBgr0(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StorePixels<4>(dst, Interleave(b, g, r));
    }

    static PXB_INLINE void StorePairs(Byte* u, Byte* v, Bytes pairs) {
        *u = static_cast<Byte>(pairs.even);
        *v = static_cast<Byte>(pairs.odd);
    }
    static PXB_INLINE void StoreYuy2(Byte* dst, Bytes luma, Bytes pairs) {
        Store(dst, {luma.even, pairs.even});
        Store(dst + 2, {luma.odd, pairs.odd});
    }

    static PXB_INLINE Bytes Evens(Bytes a, Bytes b) { return {a.even, b.even}; }
    static PXB_INLINE Bytes Odds(Bytes a, Bytes b) { return {a.odd, b.odd}; }
    static PXB_INLINE Bytes Average(Bytes a, Bytes b) {
        return {(a.even + b.even + 1) >> 1, (a.odd + b.odd + 1) >> 1};
    }

    template <int kB, int kG, int kR, int kOffset>
    static PXB_INLINE Bytes WeighBgr(const Rgb& a) {
        return {(Sum<kB, kG, kR>(a.lanes[0]) >> 8) + kOffset,
                (Sum<kB, kG, kR>(a.lanes[1]) >> 8) + kOffset};
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE Sums WeighPairs(const Rgb& a) {
        return (Sum<kB, kG, kR>(a.lanes[0]) + Sum<kB, kG, kR>(a.lanes[1])) >> 8;
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE Sums WeighPairs(const Rgb& a, const Rgb& b) {
        return (Sum<kB, kG, kR>(a.lanes[0]) + Sum<kB, kG, kR>(a.lanes[1]) +
                Sum<kB, kG, kR>(b.lanes[0]) + Sum<kB, kG, kR>(b.lanes[1])) >>
               9;
    }
    static PXB_INLINE Bytes PairUp(Sums u, Sums v) { return {u + 128, v + 128}; }

    static PXB_INLINE Weights FactorU(int u) { return {u, 0}; }
    static PXB_INLINE Weights FactorV(int v) { return {0, v}; }
    static PXB_INLINE Weights FactorUv(int u, int v) { return {u, v}; }
    static PXB_INLINE Words Weigh(Uv uv, Weights weights) {
        return uv.u * weights.u + uv.v * weights.v;
    }
    static PXB_INLINE Words MulEven(Bytes a, Words factor) { return a.even * factor; }
    static PXB_INLINE Words MulOdd(Bytes a, Words factor) { return a.odd * factor; }
    template <int>
    static PXB_INLINE Bytes Join(Words even, Words odd) {
        return Narrow<3>(even, odd);
    }
    template <int>
    static PXB_INLINE Bytes Narrow(Words low, Words high) {
        return {Clamp(low), Clamp(high)};
    }
    template <int kByte>
    static PXB_INLINE Bytes NarrowByte(const Pixels& a) {
        return {a.lanes[0][kByte], a.lanes[1][kByte]};
    }

    static PXB_INLINE Words Add(Words a, Words b) { return a + b; }
    static PXB_INLINE Words Sub(Words a, Words b) { return a - b; }
    static PXB_INLINE Words AddSaturated(Words a, Words b) { return a + b; }
    template <int kBits>
    static PXB_INLINE Words ShiftRight(Words a) {
        return a >> kBits;
    }
    static PXB_INLINE void Leave() {}

  private:
    template <int kB, int kG, int kR>
    static PXB_INLINE int Sum(const Byte (&bgrx)[4]) {
        return kB * bgrx[0] + kG * bgrx[1] + kR * bgrx[2];
    }
    static PXB_INLINE int Clamp(int a) { return a < 0 ? 0 : a > 255 ? 255 : a; }
    static PXB_INLINE Pixels Interleave(Bytes b, Bytes g, Bytes r) {
        return {
            {{static_cast<Byte>(b.even), static_cast<Byte>(g.even), static_cast<Byte>(r.even), 0},
             {static_cast<Byte>(b.odd), static_cast<Byte>(g.odd), static_cast<Byte>(r.odd), 0}}};
    }
    template <int kBytes>
    static PXB_INLINE void StorePixels(Byte* dst, const Pixels& a) {
        for (int i = 0; i < 2; ++i)
            for (int k = 0; k < kBytes; ++k) dst[kBytes * i + k] = a.lanes[i][k];
    }
};

}  // namespace pxb::PXB_TARGET
