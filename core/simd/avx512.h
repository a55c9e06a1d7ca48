// AVX-512 with its byte permutations and dot products: 64 pixels, 512-bit registers. Bytes move
// across the whole register in one step, and pixels are weighed as they lie in memory.
#pragma once
#include <immintrin.h>

#include <utility>

#include "core/rows.h"
#include "core/simd/memory.h"

namespace pxb::PXB_TARGET {

template <Stores kStores>
struct Avx512 {
    static constexpr bool kStreams = kStores == Stores::kStreamed;
    static constexpr int kPixels = 64;
    static constexpr int kBgr0 = 4;
    struct Bytes {
        __m512i all;
    };
    struct Words {
        __m512i all;
    };
    // Bytes in another order, as packing leaves them: byte i is in place kPlace(i).
    template <int (*kPlace)(int)>
    struct Packed {
        __m512i all;
    };
    struct Pixels {
        __m512i quarter[4];  // 16 pixels each
    };
    // RGB to be weighed. Eight registers hold no two rows of pixels: there they stay in memory.
    template <int kBytesPerPixel>
    struct Unloaded {
        const Byte* src;
    };
    template <int kB, int kG, int kR, class Rgb, int kRows>
    struct Sums {  // not computed yet: PairUp does so quarter by quarter, to need fewer registers
        const Rgb* rows[2];
        static constexpr int kCount = kRows;

        PXB_INLINE __m512i Quarter(int i) const {  // a 32-bit lane for each column
            __m512i sum = Dot<kB, kG, kR>(_mm512_setzero_si512(), QuarterOf(*rows[0], i));
            if (kRows == 2) sum = Dot<kB, kG, kR>(sum, QuarterOf(*rows[1], i));
            return sum;
        }
    };
    struct Uv {
        __m512i all;  // signed bytes u, v in each 16-bit lane
    };
    struct Weights {
        __m512i all;  // unsigned bytes in the order of Uv
    };
    struct Yuy2 {
        Bytes low, high;
        Uv uv_low, uv_high;
    };

    static PXB_INLINE Words Set(int value) {
        return {_mm512_set1_epi16(static_cast<short>(value))};
    }
    static PXB_INLINE Words Factor(int value) {
        Words words = Set(value);
        return words;
    }

    static PXB_INLINE Bytes Load(const Byte* src) { return {LoadAll(src)}; }
    // StoreBgr0 wants lanes "dealt": groups of four pixels in the four 128-bit blocks in turn.
    template <int kStore>
    static PXB_INLINE Bytes LoadFor(const Byte* src) {
        return {Deal<kStore, kSampleGroup>(LoadAll(src))};
    }
    template <int kStore>
    static PXB_INLINE Bytes LoadPairsFor(const Byte* u, const Byte* v) {
        return {Pick(LoadHalf(u), LoadHalf(v), [](int i) PXB_INLINE_LAMBDA {
            const int byte = PlaceFor<kStore, kSampleGroup>(i);
            return byte / 2 + byte % 2 * 64;
        })};
    }
    static PXB_INLINE Uv UvOf(Bytes pairs) { return Signed(pairs.all); }
    template <int kStore>
    static PXB_INLINE Yuy2 LoadYuy2For(const Byte* src) {
        const __m512i low = LoadAll(src), high = LoadAll(src + 64);
        const __m512i uv_twice = Indices([](int i) PXB_INLINE_LAMBDA {
            const int luma = PlaceFor<kStore, kYuy2Group>(i);
            return luma / 4 * 4 + luma % 2 * 2 + 1;
        });
        return {{Deal<kStore, kYuy2Group>(low)},
                {Deal<kStore, kYuy2Group>(high)},
                Signed(_mm512_permutexvar_epi8(uv_twice, low)),
                Signed(_mm512_permutexvar_epi8(uv_twice, high))};
    }
    static PXB_INLINE Pixels LoadBgr(const Byte* src) {
        Pixels pixels = LoadQuarters<3>(src);
        for (__m512i& quarter : pixels.quarter)
            quarter = _mm512_and_si512(quarter, _mm512_set1_epi32(0x00FFFFFF));
        return pixels;
    }
    static PXB_INLINE Pixels LoadBgrx(const Byte* src) { return LoadQuarters<4>(src); }
    // Weighing does not see X.
    template <int kBytesPerPixel>
    static PXB_INLINE auto LoadRgb(const Byte* src) {
        if constexpr (kFewRegisters)
            return Unloaded<kBytesPerPixel>{src};
        else
            return LoadQuarters<kBytesPerPixel>(src);
    }

    static PXB_INLINE void Store(Byte* dst, Bytes a) { StoreAll(dst, a.all); }
    static PXB_INLINE void StoreBgr(Byte* dst, const Pixels& a) {
        StoreAll(dst, Squeeze<0>(a));
        StoreAll(dst + 64, Squeeze<1>(a));
        StoreAll(dst + 128, Squeeze<2>(a));
    }
    static PXB_INLINE void StoreBgrx(Byte* dst, const Pixels& a) {
        for (int i = 0; i < 4; ++i) StoreAll(dst + 64 * i, a.quarter[i]);
    }
    // A permutation puts each sample into its place in one of three outputs; blends gather them.
    static PXB_INLINE void StoreBgr(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StoreBgr(dst, Packed<InOrder>{b.all}, Packed<InOrder>{g.all}, Packed<InOrder>{r.all});
    }
    template <int (*kPlace)(int)>
    static PXB_INLINE void StoreBgr(Byte* dst, Packed<kPlace> b, Packed<kPlace> g,
                                    Packed<kPlace> r) {
        const __m512i bs = Place<0>(b), gs = Place<1>(g), rs = Place<2>(r);
        StoreAll(dst, InTurn(bs, gs, rs));
        StoreAll(dst + 64, InTurn(gs, rs, bs));
        StoreAll(dst + 128, InTurn(rs, bs, gs));
    }
    static PXB_INLINE void StoreBgr0(Byte* dst, Bytes b, Bytes g, Bytes r) {
        const __m512i zero = _mm512_setzero_si512();
        const __m512i bg_low = _mm512_unpacklo_epi8(b.all, g.all);
        const __m512i bg_high = _mm512_unpackhi_epi8(b.all, g.all);
        const __m512i r0_low = _mm512_unpacklo_epi8(r.all, zero);
        const __m512i r0_high = _mm512_unpackhi_epi8(r.all, zero);
        StoreAll(dst, _mm512_unpacklo_epi16(bg_low, r0_low));
        StoreAll(dst + 64, _mm512_unpackhi_epi16(bg_low, r0_low));
        StoreAll(dst + 128, _mm512_unpacklo_epi16(bg_high, r0_high));
        StoreAll(dst + 192, _mm512_unpackhi_epi16(bg_high, r0_high));
    }

    static PXB_INLINE void StorePairs(Byte* u, Byte* v, Bytes pairs) {
        const __m512i split = _mm512_permutexvar_epi8(
            Indices([](int i) PXB_INLINE_LAMBDA { return i % 32 * 2 + i / 32; }), pairs.all);
        StoreHalf(u, _mm512_castsi512_si256(split));
        StoreHalf(v, _mm512_extracti64x4_epi64(split, 1));
    }
    static PXB_INLINE void StoreYuy2(Byte* dst, Bytes luma, Bytes pairs) {
        const auto interleave = [](int i) PXB_INLINE_LAMBDA { return i / 2 + i % 2 * 64; };
        StoreAll(dst, Pick(luma.all, pairs.all, interleave));
        StoreAll(dst + 64, Pick(luma.all, pairs.all,
                                [=](int i) PXB_INLINE_LAMBDA { return interleave(i) + 32; }));
    }

    static PXB_INLINE Bytes Evens(Bytes a, Bytes b) {
        return {Pick(a.all, b.all, [](int i) PXB_INLINE_LAMBDA { return 2 * i; })};
    }
    static PXB_INLINE Bytes Odds(Bytes a, Bytes b) {
        return {Pick(a.all, b.all, [](int i) PXB_INLINE_LAMBDA { return 2 * i + 1; })};
    }
    static PXB_INLINE Bytes Average(Bytes a, Bytes b) { return {_mm512_avg_epu8(a.all, b.all)}; }

    // The weight of G may be more than a signed byte holds: it is added in two halves.
    template <int kB, int kG, int kR, int kOffset, class Rgb>
    static PXB_INLINE Bytes WeighBgr(const Rgb& a) {
        const __m512i offset = _mm512_set1_epi32(kOffset << 8);
        Pixels sums;
        for (int i = 0; i < 4; ++i) {
            const __m512i pixels = QuarterOf(a, i);
            sums.quarter[i] = Dot<0, kG - kG / 2, 0>(Dot<kB, kG / 2, kR>(offset, pixels), pixels);
        }
        return NarrowByte<1>(sums);
    }
    template <int kB, int kG, int kR, class Rgb>
    static PXB_INLINE Sums<kB, kG, kR, Rgb, 1> WeighPairs(const Rgb& a) {
        return {{&a, nullptr}};
    }
    template <int kB, int kG, int kR, class Rgb>
    static PXB_INLINE Sums<kB, kG, kR, Rgb, 2> WeighPairs(const Rgb& a, const Rgb& b) {
        return {{&a, &b}};
    }
    // Each 128-bit block of `pairs` has two sums of u and then two of v.
    template <class SumsU, class SumsV>
    static PXB_INLINE Bytes PairUp(const SumsU& u, const SumsV& v) {
        Pixels pairs;
        for (int i = 0; i < 4; ++i) {
            const __m512 us = _mm512_castsi512_ps(u.Quarter(i));
            const __m512 vs = _mm512_castsi512_ps(v.Quarter(i));
            const __m512 even = _mm512_shuffle_ps(us, vs, _MM_SHUFFLE(2, 0, 2, 0));
            const __m512 odd = _mm512_shuffle_ps(us, vs, _MM_SHUFFLE(3, 1, 3, 1));
            const __m512i sums =
                _mm512_add_epi32(_mm512_castps_si512(even), _mm512_castps_si512(odd));
            pairs.quarter[i] = _mm512_srli_epi32(sums, SumsU::kCount - 1);
        }
        const auto second_bytes = [](int i) PXB_INLINE_LAMBDA {
            const int lane = i % 32 / 4 * 4 + i % 2 * 2 + i / 2 % 2;
            return lane * 4 + 1;
        };
        return {_mm512_xor_si512(PickHalves(pairs, second_bytes),
                                 _mm512_set1_epi8(static_cast<char>(128)))};
    }

    static PXB_INLINE Weights FactorU(int u) { return FactorUv(u, 0); }
    static PXB_INLINE Weights FactorV(int v) { return FactorUv(0, v); }
    static PXB_INLINE Weights FactorUv(int u, int v) { return {Factor(u | v << 8).all}; }
    static PXB_INLINE Words Weigh(Uv uv, Weights weights) {
        return {_mm512_maddubs_epi16(weights.all, uv.all)};
    }
    static PXB_INLINE Words MulEven(Bytes a, Words factor) {
        return {_mm512_maddubs_epi16(a.all, factor.all)};
    }
    static PXB_INLINE Words MulOdd(Bytes a, Words factor) {
        return {_mm512_maddubs_epi16(a.all, _mm512_slli_epi16(factor.all, 8))};
    }
    template <int kStore>
    static PXB_INLINE auto Join(Words even, Words odd) {
        const __m512i apart = _mm512_packus_epi16(even.all, odd.all);
        if constexpr (kStore == kBgr0)
            return Bytes{_mm512_shuffle_epi8(
                apart, Indices([](int i) PXB_INLINE_LAMBDA { return EvensFirst(i) % 16; }))};
        else
            return Packed<EvensFirst>{apart};
    }
    template <int kStore>
    static PXB_INLINE auto Narrow(Words low, Words high) {
        const __m512i bytes = _mm512_packus_epi16(low.all, high.all);
        if constexpr (kStore == kBgr0)
            return Bytes{bytes};
        else
            return Packed<HalvesInTurn>{bytes};
    }
    template <int kByte>
    static PXB_INLINE Bytes NarrowByte(const Pixels& a) {
        return {PickHalves(a, [](int i) PXB_INLINE_LAMBDA { return i % 32 * 4 + kByte; })};
    }

    static PXB_INLINE Words Add(Words a, Words b) { return {_mm512_add_epi16(a.all, b.all)}; }
    static PXB_INLINE Words Sub(Words a, Words b) { return {_mm512_sub_epi16(a.all, b.all)}; }
    static PXB_INLINE Words AddSaturated(Words a, Words b) {
        return {_mm512_adds_epi16(a.all, b.all)};
    }
    template <int kBits>
    static PXB_INLINE Words ShiftRight(Words a) {
        return {_mm512_srai_epi16(a.all, kBits)};
    }
    static PXB_INLINE void Leave() {
        if (kStreams) _mm_sfence();
    }

  private:
    static constexpr bool kFewRegisters = sizeof(void*) < 8;

    static PXB_INLINE __m512i QuarterOf(const Pixels& a, int i) { return a.quarter[i]; }
    template <int kBytesPerPixel>
    static PXB_INLINE __m512i QuarterOf(Unloaded<kBytesPerPixel> a, int i) {
        return LoadQuarter<kBytesPerPixel>(a.src, i);
    }
    static PXB_INLINE __m512i LoadAll(const Byte* src) {
        if (kStreams) PrefetchAhead(src);
        return _mm512_loadu_si512(src);
    }
    static PXB_INLINE __m512i LoadHalf(const Byte* src) {
        if (kStreams) PrefetchAhead(src);
        return _mm512_castsi256_si512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src)));
    }
    static PXB_INLINE void StoreAll(Byte* dst, __m512i a) {
        if (kStreams)
            _mm512_stream_si512(reinterpret_cast<__m512i*>(dst), a);
        else
            _mm512_storeu_si512(dst, a);
    }
    static PXB_INLINE void StoreHalf(Byte* dst, __m256i a) {
        if (kStreams)
            _mm256_stream_si256(reinterpret_cast<__m256i*>(dst), a);
        else
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), a);
    }

    // The constant whose byte i is at(i).
    template <class At>
    static PXB_INLINE __m512i Indices(At at) {
        return [=]<int... i>(std::integer_sequence<int, i...>) PXB_INLINE_LAMBDA {
            return _mm512_set_epi8(static_cast<char>(at(63 - i))...);
        }
        (std::make_integer_sequence<int, 64>());
    }
    // Bit i is at(i). As a plain constant it would be put together in every step on 32 bits.
    template <class At>
    static PXB_INLINE __mmask64 Mask(At at) {
        return _mm512_movepi8_mask(
            Indices([=](int i) PXB_INLINE_LAMBDA { return at(i) ? -1 : 0; }));
    }
    // Byte i of the result is byte at(i) of a (0 to 63) or b (64 to 127).
    template <class At>
    static PXB_INLINE __m512i Pick(__m512i a, __m512i b, At at) {
        return _mm512_permutex2var_epi8(a, Indices(at), b);
    }
    // The first half picked from quarters 0 and 1, the second one from 2 and 3.
    template <class At>
    static PXB_INLINE __m512i PickHalves(const Pixels& a, At at) {
        const __m512i low = Pick(a.quarter[0], a.quarter[1], at);
        const __m512i high = Pick(a.quarter[2], a.quarter[3], at);
        return _mm512_inserti64x4(low, _mm512_castsi512_si256(high), 1);
    }
    // 16 pixels. Those of 3 bytes become 4, the last of which may be anything. Their last quarter is
    // loaded 16 bytes early, so that nothing behind the pixels is read.
    template <int kBytesPerPixel>
    static PXB_INLINE __m512i LoadQuarter(const Byte* src, int i) {
        if (kBytesPerPixel == 4) return LoadAll(src + 64 * i);
        const auto spread = [](int byte) PXB_INLINE_LAMBDA { return byte / 4 * 3 + byte % 4; };
        const auto late = [=](int byte) PXB_INLINE_LAMBDA { return (spread(byte) + 16) % 64; };
        if (i == 3) return _mm512_permutexvar_epi8(Indices(late), LoadAll(src + 128));
        return _mm512_permutexvar_epi8(Indices(spread), LoadAll(src + 48 * i));
    }
    template <int kBytesPerPixel>
    static PXB_INLINE Pixels LoadQuarters(const Byte* src) {
        Pixels pixels;
        for (int i = 0; i < 4; ++i) pixels.quarter[i] = LoadQuarter<kBytesPerPixel>(src, i);
        return pixels;
    }
    static constexpr int InOrder(int i) { return i; }
    // In each 128-bit block the even bytes before the odd ones.
    static constexpr int EvensFirst(int i) { return i / 16 * 16 + i % 16 / 2 + i % 2 * 8; }
    // In each block 8 bytes of the low half and then 8 of the high one.
    static constexpr int HalvesInTurn(int i) { return i % 32 / 8 * 16 + i / 32 * 8 + i % 8; }
    // Byte i of x, y or z, in turn.
    static PXB_INLINE __m512i InTurn(__m512i x, __m512i y, __m512i z) {
        const __mmask64 ys = Mask([](int i) PXB_INLINE_LAMBDA { return i % 3 == 1; });
        const __mmask64 zs = Mask([](int i) PXB_INLINE_LAMBDA { return i % 3 == 2; });
        return _mm512_mask_blend_epi8(zs, _mm512_mask_blend_epi8(ys, x, y), z);
    }
    // Four pixels take so many bytes.
    static constexpr int kSampleGroup = 4, kYuy2Group = 8;
    // Where byte i on its way to a store of kStore bytes a pixel comes from.
    template <int kStore, int kGroup>
    static constexpr int PlaceFor(int i) {
        return kStore == kBgr0 ? (i % 16 / kGroup * 4 + i / 16) * kGroup + i % kGroup : i;
    }
    template <int kStore, int kGroup>
    static PXB_INLINE __m512i Deal(__m512i a) {
        if (kStore != kBgr0) return a;
        return _mm512_permutexvar_epi8(Indices(PlaceFor<kStore, kGroup>), a);
    }
    // Bytes 64 k to 64 k + 63 of the pixels without X. They come from quarters k and k + 1.
    template <int k>
    static PXB_INLINE __m512i Squeeze(const Pixels& a) {
        return Pick(a.quarter[k], a.quarter[k + 1], [](int i) PXB_INLINE_LAMBDA {
            const int byte = 64 * k + i;
            return byte / 3 * 4 + byte % 3 - 64 * k;
        });
    }
    // Sample i of a channel belongs into byte 3 i + channel of 192, here modulo 64.
    template <int kChannel, int (*kPlace)(int)>
    static PXB_INLINE __m512i Place(Packed<kPlace> a) {
        return _mm512_permutexvar_epi8(Indices([](int i) PXB_INLINE_LAMBDA {
                                           while (i % 3 != kChannel) i += 64;
                                           return kPlace(i / 3);
                                       }),
                                       a.all);
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE __m512i Dot(__m512i sum, __m512i pixels) {
        static_assert(kB < 128 && kG < 128 && kR < 128);
        const int weights = (kB & 0xFF) | (kG & 0xFF) << 8 | (kR & 0xFF) << 16;
        return _mm512_dpbusd_epi32(sum, pixels, _mm512_set1_epi32(weights));
    }
    static PXB_INLINE Uv Signed(__m512i uv) {
        return {_mm512_xor_si512(uv, _mm512_set1_epi8(static_cast<char>(0x80)))};
    }
};

}  // namespace pxb::PXB_TARGET
