// SSE2: 16 pixels, 128-bit registers.
#pragma once
#include <emmintrin.h>

#include "core/rows.h"

namespace pxb::PXB_TARGET {

struct Sse2 {
    static constexpr bool kStreams = false;
    static constexpr int kPixels = 16;
    struct Bytes {
        __m128i all;
    };
    struct Words {
        __m128i all;
    };
    struct Pixels {
        __m128i quarter[4];  // 4 pixels each
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

    static PXB_INLINE Words Set(int value) { return {_mm_set1_epi16(static_cast<short>(value))}; }
    static PXB_INLINE Words Factor(int value) {
        Words words = Set(value);
        __asm__("" : "+x"(words.all));
        return words;
    }

    static PXB_INLINE Bytes Load(const Byte* src) { return {LoadAll(src)}; }
    template <int>
    static PXB_INLINE Bytes LoadFor(const Byte* src) {
        return Load(src);
    }
    template <int>
    static PXB_INLINE Bytes LoadPairsFor(const Byte* u, const Byte* v) {
        return {_mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(u)),
                                  _mm_loadl_epi64(reinterpret_cast<const __m128i*>(v)))};
    }
    static PXB_INLINE Uv UvOf(Bytes pairs) {
        return {Signed(LowBytes(pairs.all)), Signed({_mm_srli_epi16(pairs.all, 8)})};
    }
    template <int>
    static PXB_INLINE Yuy2 LoadYuy2For(const Byte* src) {
        const __m128i low = LoadAll(src), high = LoadAll(src + 16);
        return {{low}, {high}, TwiceUv(low), TwiceUv(high)};
    }
    static PXB_INLINE Pixels LoadBgr(const Byte* src) {
        const __m128i a = LoadAll(src), b = LoadAll(src + 16), c = LoadAll(src + 32);
        return {{Spread(a), Spread(_mm_or_si128(_mm_srli_si128(a, 12), _mm_slli_si128(b, 4))),
                 Spread(_mm_or_si128(_mm_srli_si128(b, 8), _mm_slli_si128(c, 8))),
                 Spread(_mm_srli_si128(c, 4))}};
    }
    static PXB_INLINE Pixels LoadBgrx(const Byte* src) {
        return {{LoadAll(src), LoadAll(src + 16), LoadAll(src + 32), LoadAll(src + 48)}};
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
        const __m128i p = Squeeze(a.quarter[0]), q = Squeeze(a.quarter[1]),
                      r = Squeeze(a.quarter[2]), s = Squeeze(a.quarter[3]);
        StoreAll(dst, _mm_or_si128(p, _mm_slli_si128(q, 12)));
        StoreAll(dst + 16, _mm_or_si128(_mm_srli_si128(q, 4), _mm_slli_si128(r, 8)));
        StoreAll(dst + 32, _mm_or_si128(_mm_srli_si128(r, 8), _mm_slli_si128(s, 4)));
    }
    static PXB_INLINE void StoreBgrx(Byte* dst, const Pixels& a) {
        for (int i = 0; i < 4; ++i) StoreAll(dst + 16 * i, a.quarter[i]);
    }
    static PXB_INLINE void StoreBgr(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StoreBgr(dst, Interleave(b, g, r));
    }
    static PXB_INLINE void StoreBgr0(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StoreBgrx(dst, Interleave(b, g, r));
    }

    static PXB_INLINE void StorePairs(Byte* u, Byte* v, Bytes pairs) {
        const __m128i uv = _mm_packus_epi16(LowBytes(pairs.all).all, _mm_srli_epi16(pairs.all, 8));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(u), uv);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(v), _mm_srli_si128(uv, 8));
    }
    static PXB_INLINE void StoreYuy2(Byte* dst, Bytes luma, Bytes pairs) {
        StoreAll(dst, _mm_unpacklo_epi8(luma.all, pairs.all));
        StoreAll(dst + 16, _mm_unpackhi_epi8(luma.all, pairs.all));
    }

    static PXB_INLINE Bytes Evens(Bytes a, Bytes b) {
        return {_mm_packus_epi16(LowBytes(a.all).all, LowBytes(b.all).all)};
    }
    static PXB_INLINE Bytes Odds(Bytes a, Bytes b) {
        return {_mm_packus_epi16(_mm_srli_epi16(a.all, 8), _mm_srli_epi16(b.all, 8))};
    }
    static PXB_INLINE Bytes Average(Bytes a, Bytes b) { return {_mm_avg_epu8(a.all, b.all)}; }

    template <int kB, int kG, int kR, int kOffset>
    static PXB_INLINE Bytes WeighBgr(const Rgb& a) {
        const __m128i zero = _mm_setzero_si128(),
                      weights = _mm_set_epi16(0, kR, kG, kB, 0, kR, kG, kB);
        const auto sums = [&](__m128i p) PXB_INLINE_LAMBDA {
            const __m128i low = _mm_unpacklo_epi8(p, zero), high = _mm_unpackhi_epi8(p, zero);
            return AddHalves(_mm_madd_epi16(low, weights), _mm_madd_epi16(high, weights));
        };
        const auto words = [&](int i) PXB_INLINE_LAMBDA {
            return _mm_packs_epi32(_mm_srli_epi32(sums(a.quarter[i]), 8),
                                   _mm_srli_epi32(sums(a.quarter[i + 1]), 8));
        };
        return {_mm_add_epi8(_mm_packus_epi16(words(0), words(2)), _mm_set1_epi8(kOffset))};
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE Sums WeighPairs(const Rgb& a) {
        return WeighPairSums<kB, kG, kR, 8>(
            [&](int i) PXB_INLINE_LAMBDA { return SumPair(a.quarter[i]); });
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE Sums WeighPairs(const Rgb& a, const Rgb& b) {
        return WeighPairSums<kB, kG, kR, 9>([&](int i) PXB_INLINE_LAMBDA {
            return _mm_add_epi16(SumPair(a.quarter[i]), SumPair(b.quarter[i]));
        });
    }
    static PXB_INLINE Bytes PairUp(Sums u, Sums v) {
        const __m128i pairs = _mm_or_si128(LowBytes(u.all).all, _mm_slli_epi16(v.all, 8));
        return {_mm_xor_si128(pairs, _mm_set1_epi8(static_cast<char>(0x80)))};
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
        return Mul({_mm_srli_epi16(a.all, 8)}, factor);
    }
    template <int>
    static PXB_INLINE Bytes Join(Words even, Words odd) {
        const __m128i apart = Narrow<3>(even, odd).all;
        return {_mm_unpacklo_epi8(apart, _mm_srli_si128(apart, 8))};
    }
    template <int>
    static PXB_INLINE Bytes Narrow(Words low, Words high) {
        return {_mm_packus_epi16(low.all, high.all)};
    }
    template <int kByte>
    static PXB_INLINE Bytes NarrowByte(const Pixels& a) {
        const auto byte = [](__m128i p) PXB_INLINE_LAMBDA {
            return _mm_and_si128(_mm_srli_epi32(p, 8 * kByte), _mm_set1_epi32(0xFF));
        };
        return {_mm_packus_epi16(_mm_packs_epi32(byte(a.quarter[0]), byte(a.quarter[1])),
                                 _mm_packs_epi32(byte(a.quarter[2]), byte(a.quarter[3])))};
    }

    static PXB_INLINE Words Add(Words a, Words b) { return {_mm_add_epi16(a.all, b.all)}; }
    static PXB_INLINE Words Sub(Words a, Words b) { return {_mm_sub_epi16(a.all, b.all)}; }
    static PXB_INLINE Words AddSaturated(Words a, Words b) {
        return {_mm_adds_epi16(a.all, b.all)};
    }
    template <int kBits>
    static PXB_INLINE Words ShiftRight(Words a) {
        return {_mm_srai_epi16(a.all, kBits)};
    }
    static PXB_INLINE void Leave() {}

  private:
    static PXB_INLINE __m128i LoadAll(const Byte* src) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
    }
    static PXB_INLINE void StoreAll(Byte* dst, __m128i a) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), a);
    }
    static PXB_INLINE Words LowBytes(__m128i a) { return {_mm_and_si128(a, _mm_set1_epi16(0xFF))}; }
    // Adds the two products that a multiply-add leaves of each pixel.
    static PXB_INLINE __m128i AddHalves(__m128i a, __m128i b) {
        const __m128 first = _mm_castsi128_ps(a), second = _mm_castsi128_ps(b);
        return _mm_add_epi32(
            _mm_castps_si128(_mm_shuffle_ps(first, second, _MM_SHUFFLE(2, 0, 2, 0))),
            _mm_castps_si128(_mm_shuffle_ps(first, second, _MM_SHUFFLE(3, 1, 3, 1))));
    }
    // Sums of neighbouring pixels, four words B G R X each.
    static PXB_INLINE __m128i SumPair(__m128i pixels) {
        const __m128i zero = _mm_setzero_si128();
        const __m128i low = _mm_unpacklo_epi8(pixels, zero), high = _mm_unpackhi_epi8(pixels, zero);
        return _mm_add_epi16(_mm_unpacklo_epi64(low, high), _mm_unpackhi_epi64(low, high));
    }
    template <int kB, int kG, int kR, int kShift, class PairSum>
    static PXB_INLINE Words WeighPairSums(const PairSum& pair_sum) {
        const __m128i weights = _mm_set_epi16(0, kR, kG, kB, 0, kR, kG, kB);
        const auto sums = [&](int i) PXB_INLINE_LAMBDA {
            return _mm_srai_epi32(AddHalves(_mm_madd_epi16(pair_sum(i), weights),
                                            _mm_madd_epi16(pair_sum(i + 1), weights)),
                                  kShift);
        };
        return {_mm_packs_epi32(sums(0), sums(2))};
    }
    // u and v of each pair of pixels, once for each pixel.
    static PXB_INLINE Uv TwiceUv(__m128i yuy2) {
        constexpr int kU = _MM_SHUFFLE(2, 2, 0, 0), kV = _MM_SHUFFLE(3, 3, 1, 1);
        const __m128i uv = _mm_srli_epi16(yuy2, 8);
        return {Signed({_mm_shufflehi_epi16(_mm_shufflelo_epi16(uv, kU), kU)}),
                Signed({_mm_shufflehi_epi16(_mm_shufflelo_epi16(uv, kV), kV)})};
    }
    static PXB_INLINE Words Signed(Words a) { return Sub(a, Set(128)); }
    static PXB_INLINE Words Mul(Words a, Words b) { return {_mm_mullo_epi16(a.all, b.all)}; }
    static PXB_INLINE Pixels Interleave(Bytes b, Bytes g, Bytes r) {
        const __m128i zero = _mm_setzero_si128();
        const __m128i bg_low = _mm_unpacklo_epi8(b.all, g.all);
        const __m128i bg_high = _mm_unpackhi_epi8(b.all, g.all);
        const __m128i r0_low = _mm_unpacklo_epi8(r.all, zero);
        const __m128i r0_high = _mm_unpackhi_epi8(r.all, zero);
        return {{_mm_unpacklo_epi16(bg_low, r0_low), _mm_unpackhi_epi16(bg_low, r0_low),
                 _mm_unpacklo_epi16(bg_high, r0_high), _mm_unpackhi_epi16(bg_high, r0_high)}};
    }
    // 12 bytes to 4 lanes, and back. In each half two pixels of 3 bytes move apart or together.
    static PXB_INLINE __m128i Spread(__m128i a) {
        const __m128i halves = _mm_unpacklo_epi64(a, _mm_srli_si128(a, 6));
        return _mm_or_si128(
            _mm_and_si128(halves, FirstPixels()),
            _mm_and_si128(_mm_slli_epi64(halves, 8), _mm_slli_epi64(FirstPixels(), 32)));
    }
    static PXB_INLINE __m128i Squeeze(__m128i a) {
        const __m128i halves =
            _mm_or_si128(_mm_and_si128(a, FirstPixels()),
                         _mm_and_si128(_mm_srli_epi64(a, 8), _mm_slli_epi64(FirstPixels(), 24)));
        return _mm_or_si128(_mm_move_epi64(halves), _mm_slli_si128(_mm_srli_si128(halves, 8), 6));
    }
    static PXB_INLINE __m128i FirstPixels() { return _mm_set_epi32(0, 0xFFFFFF, 0, 0xFFFFFF); }
};

}  // namespace pxb::PXB_TARGET
