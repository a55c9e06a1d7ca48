// MMX: 8 pixels, 64-bit registers.
#pragma once
#include <mmintrin.h>

#include "core/rows.h"

namespace pxb::PXB_TARGET {

struct Mmx {
    static constexpr bool kStreams = false;
    static constexpr int kPixels = 8;
    struct Bytes {
        __m64 all;
    };
    struct Words {
        __m64 all;
    };
    struct Pixels {
        __m64 quarter[4];  // 2 pixels each
    };
    using Rgb = Pixels;
    using Sums = Words;
    struct Uv {
        Words u, v;
    };
    struct WeightU {
        Words factor;
    };
    struct WeightV {
        Words factor;
    };
    struct WeightUv {
        Words u, v;
    };
    struct Yuy2 {
        Bytes low, high;
        Uv uv_low, uv_high;
    };

    static PXB_INLINE Words Set(int value) { return {_mm_set1_pi16(static_cast<short>(value))}; }
    static PXB_INLINE Words Factor(int value) { return Set(value); }

    static PXB_INLINE Bytes Load(const Byte* src) { return {LoadAll(src)}; }
    template <int>
    static PXB_INLINE Bytes LoadFor(const Byte* src) {
        return Load(src);
    }
    template <int>
    static PXB_INLINE Bytes LoadPairsFor(const Byte* u, const Byte* v) {
        int us, vs;
        __builtin_memcpy(&us, u, sizeof us);
        __builtin_memcpy(&vs, v, sizeof vs);
        return {_mm_unpacklo_pi8(_mm_cvtsi32_si64(us), _mm_cvtsi32_si64(vs))};
    }
    static PXB_INLINE Uv UvOf(Bytes pairs) {
        return {Signed(LowBytes(pairs.all)), Signed({_mm_srli_pi16(pairs.all, 8)})};
    }
    template <int>
    static PXB_INLINE Yuy2 LoadYuy2For(const Byte* src) {
        const __m64 low = LoadAll(src), high = LoadAll(src + 8);
        return {{low}, {high}, TwiceUv(low), TwiceUv(high)};
    }
    static PXB_INLINE Pixels LoadBgr(const Byte* src) {
        const __m64 a = LoadAll(src), b = LoadAll(src + 8), c = LoadAll(src + 16);
        return {{Spread(a), Spread(_mm_or_si64(_mm_srli_si64(a, 48), _mm_slli_si64(b, 16))),
                 Spread(_mm_or_si64(_mm_srli_si64(b, 32), _mm_slli_si64(c, 32))),
                 Spread(_mm_srli_si64(c, 16))}};
    }
    static PXB_INLINE Pixels LoadBgrx(const Byte* src) {
        return {{LoadAll(src), LoadAll(src + 8), LoadAll(src + 16), LoadAll(src + 24)}};
    }

    template <int kBytesPerPixel>
    static PXB_INLINE Rgb LoadRgb(const Byte* src) {
        if constexpr (kBytesPerPixel == 3)
            return LoadBgr(src);
        else
            return LoadBgrx(src);
    }

    static PXB_INLINE void Store(Byte* dst, Bytes a) { StoreAll(dst, a.all); }
    static PXB_INLINE void StoreBgr(Byte* dst, const Pixels& a) {
        const __m64 p = Squeeze(a.quarter[0]), q = Squeeze(a.quarter[1]), r = Squeeze(a.quarter[2]),
                    s = Squeeze(a.quarter[3]);
        StoreAll(dst, _mm_or_si64(p, _mm_slli_si64(q, 48)));
        StoreAll(dst + 8, _mm_or_si64(_mm_srli_si64(q, 16), _mm_slli_si64(r, 32)));
        StoreAll(dst + 16, _mm_or_si64(_mm_srli_si64(r, 32), _mm_slli_si64(s, 16)));
    }
    static PXB_INLINE void StoreBgrx(Byte* dst, const Pixels& a) {
        for (int i = 0; i < 4; ++i) StoreAll(dst + 8 * i, a.quarter[i]);
    }
    static PXB_INLINE void StoreBgr(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StoreBgr(dst, Interleave(b, g, r));
    }
    static PXB_INLINE void StoreBgr0(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StoreBgrx(dst, Interleave(b, g, r));
    }

    static PXB_INLINE void StorePairs(Byte* u, Byte* v, Bytes pairs) {
        const __m64 us = _mm_packs_pu16(LowBytes(pairs.all).all, _mm_setzero_si64());
        const __m64 vs = _mm_packs_pu16(_mm_srli_pi16(pairs.all, 8), _mm_setzero_si64());
        const int u_bytes = _mm_cvtsi64_si32(us), v_bytes = _mm_cvtsi64_si32(vs);
        __builtin_memcpy(u, &u_bytes, sizeof u_bytes);
        __builtin_memcpy(v, &v_bytes, sizeof v_bytes);
    }
    static PXB_INLINE void StoreYuy2(Byte* dst, Bytes luma, Bytes pairs) {
        StoreAll(dst, _mm_unpacklo_pi8(luma.all, pairs.all));
        StoreAll(dst + 8, _mm_unpackhi_pi8(luma.all, pairs.all));
    }

    static PXB_INLINE Bytes Evens(Bytes a, Bytes b) {
        return {_mm_packs_pu16(LowBytes(a.all).all, LowBytes(b.all).all)};
    }
    static PXB_INLINE Bytes Odds(Bytes a, Bytes b) {
        return {_mm_packs_pu16(_mm_srli_pi16(a.all, 8), _mm_srli_pi16(b.all, 8))};
    }
    static PXB_INLINE Bytes Average(Bytes a, Bytes b) {
        const __m64 half =
            _mm_and_si64(_mm_srli_si64(_mm_xor_si64(a.all, b.all), 1), _mm_set1_pi8(0x7F));
        return {_mm_sub_pi8(_mm_or_si64(a.all, b.all), half)};
    }

    template <int kB, int kG, int kR, int kOffset>
    static PXB_INLINE Bytes WeighBgr(const Rgb& a) {
        const __m64 zero = _mm_setzero_si64(), weights = _mm_set_pi16(0, kR, kG, kB);
        const auto sums = [&](__m64 p) PXB_INLINE_LAMBDA {
            const __m64 low = _mm_unpacklo_pi8(p, zero), high = _mm_unpackhi_pi8(p, zero);
            return AddHalves(_mm_madd_pi16(low, weights), _mm_madd_pi16(high, weights));
        };
        const auto words = [&](int i) PXB_INLINE_LAMBDA {
            return _mm_packs_pi32(_mm_srli_pi32(sums(a.quarter[i]), 8),
                                  _mm_srli_pi32(sums(a.quarter[i + 1]), 8));
        };
        return {_mm_add_pi8(_mm_packs_pu16(words(0), words(2)), _mm_set1_pi8(kOffset))};
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE Sums WeighPairs(const Rgb& a) {
        return WeighPairSums<kB, kG, kR, 8>(
            [&](int i) PXB_INLINE_LAMBDA { return SumPair(a.quarter[i]); });
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE Sums WeighPairs(const Rgb& a, const Rgb& b) {
        return WeighPairSums<kB, kG, kR, 9>([&](int i) PXB_INLINE_LAMBDA {
            return _mm_add_pi16(SumPair(a.quarter[i]), SumPair(b.quarter[i]));
        });
    }
    static PXB_INLINE Bytes PairUp(Sums u, Sums v) {
        const __m64 pairs = _mm_or_si64(LowBytes(u.all).all, _mm_slli_pi16(v.all, 8));
        return {_mm_xor_si64(pairs, _mm_set1_pi8(static_cast<char>(0x80)))};
    }

    static PXB_INLINE WeightU FactorU(int u) { return {Factor(u)}; }
    static PXB_INLINE WeightV FactorV(int v) { return {Factor(v)}; }
    static PXB_INLINE WeightUv FactorUv(int u, int v) { return {Factor(u), Factor(v)}; }
    static PXB_INLINE Words Weigh(Uv uv, WeightU weight) { return Mul(uv.u, weight.factor); }
    static PXB_INLINE Words Weigh(Uv uv, WeightV weight) { return Mul(uv.v, weight.factor); }
    static PXB_INLINE Words Weigh(Uv uv, WeightUv weights) {
        return Add(Mul(uv.u, weights.u), Mul(uv.v, weights.v));
    }
    static PXB_INLINE Words MulEven(Bytes a, Words factor) { return Mul(LowBytes(a.all), factor); }
    static PXB_INLINE Words MulOdd(Bytes a, Words factor) {
        return Mul({_mm_srli_pi16(a.all, 8)}, factor);
    }
    template <int>
    static PXB_INLINE Bytes Join(Words even, Words odd) {
        const __m64 apart = Narrow<3>(even, odd).all;
        return {_mm_unpacklo_pi8(apart, _mm_srli_si64(apart, 32))};
    }
    template <int>
    static PXB_INLINE Bytes Narrow(Words low, Words high) {
        return {_mm_packs_pu16(low.all, high.all)};
    }
    template <int kByte>
    static PXB_INLINE Bytes NarrowByte(const Pixels& a) {
        const auto byte = [](__m64 p) PXB_INLINE_LAMBDA {
            return _mm_and_si64(_mm_srli_pi32(p, 8 * kByte), _mm_set1_pi32(0xFF));
        };
        return {_mm_packs_pu16(_mm_packs_pi32(byte(a.quarter[0]), byte(a.quarter[1])),
                               _mm_packs_pi32(byte(a.quarter[2]), byte(a.quarter[3])))};
    }

    static PXB_INLINE Words Add(Words a, Words b) { return {_mm_add_pi16(a.all, b.all)}; }
    static PXB_INLINE Words Sub(Words a, Words b) { return {_mm_sub_pi16(a.all, b.all)}; }
    static PXB_INLINE Words AddSaturated(Words a, Words b) { return {_mm_adds_pi16(a.all, b.all)}; }
    template <int kBits>
    static PXB_INLINE Words ShiftRight(Words a) {
        return {_mm_srai_pi16(a.all, kBits)};
    }
    static PXB_INLINE void Leave() { _mm_empty(); }

  private:
    static PXB_INLINE __m64 LoadAll(const Byte* src) {
        __m64 a;
        __builtin_memcpy(&a, src, sizeof a);
        return a;
    }
    static PXB_INLINE void StoreAll(Byte* dst, __m64 a) { __builtin_memcpy(dst, &a, sizeof a); }
    static PXB_INLINE Words LowBytes(__m64 a) { return {_mm_and_si64(a, _mm_set1_pi16(0xFF))}; }
    // Adds the two products that a multiply-add leaves of each pixel.
    static PXB_INLINE __m64 AddHalves(__m64 a, __m64 b) {
        return _mm_add_pi32(_mm_unpacklo_pi32(a, b), _mm_unpackhi_pi32(a, b));
    }
    // Sums of neighbouring pixels, four words B G R X each.
    static PXB_INLINE __m64 SumPair(__m64 pixels) {
        const __m64 zero = _mm_setzero_si64();
        return _mm_add_pi16(_mm_unpacklo_pi8(pixels, zero), _mm_unpackhi_pi8(pixels, zero));
    }
    template <int kB, int kG, int kR, int kShift, class PairSum>
    static PXB_INLINE Words WeighPairSums(const PairSum& pair_sum) {
        const __m64 weights = _mm_set_pi16(0, kR, kG, kB);
        const auto sums = [&](int i) PXB_INLINE_LAMBDA {
            return _mm_srai_pi32(AddHalves(_mm_madd_pi16(pair_sum(i), weights),
                                           _mm_madd_pi16(pair_sum(i + 1), weights)),
                                 kShift);
        };
        return {_mm_packs_pi32(sums(0), sums(2))};
    }
    // u and v of each pair of pixels, once for each pixel.
    static PXB_INLINE Uv TwiceUv(__m64 yuy2) {
        const __m64 v = _mm_srli_pi32(yuy2, 24);
        const __m64 u = _mm_srli_pi32(_mm_slli_pi32(yuy2, 16), 24);
        return {Signed({_mm_or_si64(u, _mm_slli_pi32(u, 16))}),
                Signed({_mm_or_si64(v, _mm_slli_pi32(v, 16))})};
    }
    static PXB_INLINE Words Signed(Words a) { return Sub(a, Set(128)); }
    static PXB_INLINE Words Mul(Words a, Words b) { return {_mm_mullo_pi16(a.all, b.all)}; }
    static PXB_INLINE Pixels Interleave(Bytes b, Bytes g, Bytes r) {
        const __m64 zero = _mm_setzero_si64();
        const __m64 bg_low = _mm_unpacklo_pi8(b.all, g.all);
        const __m64 bg_high = _mm_unpackhi_pi8(b.all, g.all);
        const __m64 r0_low = _mm_unpacklo_pi8(r.all, zero);
        const __m64 r0_high = _mm_unpackhi_pi8(r.all, zero);
        return {{_mm_unpacklo_pi16(bg_low, r0_low), _mm_unpackhi_pi16(bg_low, r0_low),
                 _mm_unpacklo_pi16(bg_high, r0_high), _mm_unpackhi_pi16(bg_high, r0_high)}};
    }
    // 6 bytes to 2 lanes, and back.
    static PXB_INLINE __m64 Spread(__m64 a) {
        return _mm_or_si64(_mm_and_si64(a, FirstPixel()),
                           _mm_and_si64(_mm_slli_si64(a, 8), _mm_slli_si64(FirstPixel(), 32)));
    }
    static PXB_INLINE __m64 Squeeze(__m64 a) {
        return _mm_or_si64(_mm_and_si64(a, FirstPixel()),
                           _mm_and_si64(_mm_srli_si64(a, 8), _mm_slli_si64(FirstPixel(), 24)));
    }
    static PXB_INLINE __m64 FirstPixel() { return _mm_set_pi32(0, 0xFFFFFF); }
};

}  // namespace pxb::PXB_TARGET
