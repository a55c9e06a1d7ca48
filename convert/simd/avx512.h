// Colour arithmetic in AVX-512: byte multiply-adds and dot products. Pixels are weighed as they lie
// in memory. On the way to RGB samples keep the order in which packing leaves them until they are
// stored; on the way to pixels of 4 bytes they come "dealt", groups of four pixels in the four
// 128-bit blocks in turn, which interleaving undoes.
#pragma once
#include "convert/simd/scalar.h"
#include "core/simd/avx512.h"

namespace pxb::PXB_TARGET {

template <Stores kStores, int kBytesPerPixel>
struct ToRgb<Avx512<kStores>, kBytesPerPixel> : ByteLanesOf<Avx512<kStores>> {
    using V = Avx512<kStores>;
    using L = ByteLanesOf<V>;
    using typename L::Lanes;
    using typename L::Packed;
    using typename L::Samples;
    using typename L::Uv;
    struct EvensFirst {
        __m512i all;  // Samples: in each block the even bytes before the odd ones
        static constexpr PXB_INLINE int At(int i) { return i / 16 * 16 + i % 16 / 2 + i % 2 * 8; }
    };
    struct HalvesInTurn {
        __m512i all;  // Samples: in each block 8 bytes of the low half and then 8 of the high one
        static constexpr PXB_INLINE int At(int i) { return i % 32 / 8 * 16 + i / 32 * 8 + i % 8; }
    };

    static PXB_INLINE Samples LoadLuma(const Byte* src) {
        return {Deal<kSampleGroup>(V::LoadAll(src))};
    }
    static PXB_INLINE Uv LoadUv(const Byte* u, const Byte* v) {
        return L::Signed(V::Pick(V::LoadHalf(u), V::LoadHalf(v), [](int i) PXB_INLINE_LAMBDA {
            const int byte = PlaceOf<kSampleGroup>(i);
            return byte / 2 + byte % 2 * 64;
        }));
    }
    static PXB_INLINE Uv LoadUv(const Byte* uv) {
        return L::Signed(Deal<kSampleGroup>(V::LoadAll(uv)));
    }
    static PXB_INLINE Packed LoadYuy2(const Byte* src) {
        const __m512i low = V::LoadAll(src), high = V::LoadAll(src + 64);
        const __m512i uv_twice = V::Indices([](int i) PXB_INLINE_LAMBDA {
            const int luma = PlaceOf<kYuy2Group>(i);
            return luma / 4 * 4 + luma % 2 * 2 + 1;
        });
        return {{Deal<kYuy2Group>(low)},
                {Deal<kYuy2Group>(high)},
                L::Signed(_mm512_permutexvar_epi8(uv_twice, low)),
                L::Signed(_mm512_permutexvar_epi8(uv_twice, high))};
    }

    static PXB_INLINE auto Join(Lanes even, Lanes odd) {
        const __m512i apart = _mm512_packus_epi16(even.all, odd.all);
        if constexpr (kBytesPerPixel == 4)
            return Samples{_mm512_shuffle_epi8(
                apart, V::Indices([](int i) PXB_INLINE_LAMBDA { return EvensFirst::At(i) % 16; }))};
        else
            return EvensFirst{apart};
    }
    static PXB_INLINE auto Narrow(Lanes low, Lanes high) {
        const __m512i bytes = _mm512_packus_epi16(low.all, high.all);
        if constexpr (kBytesPerPixel == 4)
            return Samples{bytes};
        else
            return HalvesInTurn{bytes};
    }
    // Of 4 bytes: X is 0.
    static PXB_INLINE void Store(Byte* dst, Samples b, Samples g, Samples r) {
        static_assert(kBytesPerPixel == 4);
        const __m512i zero = _mm512_setzero_si512();
        const __m512i bg_low = _mm512_unpacklo_epi8(b.all, g.all);
        const __m512i bg_high = _mm512_unpackhi_epi8(b.all, g.all);
        const __m512i r0_low = _mm512_unpacklo_epi8(r.all, zero);
        const __m512i r0_high = _mm512_unpackhi_epi8(r.all, zero);
        V::StoreAll(dst, _mm512_unpacklo_epi16(bg_low, r0_low));
        V::StoreAll(dst + 64, _mm512_unpackhi_epi16(bg_low, r0_low));
        V::StoreAll(dst + 128, _mm512_unpacklo_epi16(bg_high, r0_high));
        V::StoreAll(dst + 192, _mm512_unpackhi_epi16(bg_high, r0_high));
    }
    static PXB_INLINE void Store(Byte* dst, EvensFirst b, EvensFirst g, EvensFirst r) {
        V::template StoreChannels<EvensFirst>(dst, b.all, g.all, r.all);
    }
    static PXB_INLINE void Store(Byte* dst, HalvesInTurn b, HalvesInTurn g, HalvesInTurn r) {
        V::template StoreChannels<HalvesInTurn>(dst, b.all, g.all, r.all);
    }

  private:
    // Four pixels take so many bytes.
    static constexpr int kSampleGroup = 4, kYuy2Group = 8;

    // Where byte i comes from.
    template <int kGroup>
    static constexpr PXB_INLINE int PlaceOf(int i) {
        return kBytesPerPixel == 4 ? (i % 16 / kGroup * 4 + i / 16) * kGroup + i % kGroup : i;
    }
    template <int kGroup>
    static PXB_INLINE __m512i Deal(__m512i a) {
        if (kBytesPerPixel != 4) return a;
        return _mm512_permutexvar_epi8(
            V::Indices([](int i) PXB_INLINE_LAMBDA { return PlaceOf<kGroup>(i); }), a);
    }
};

template <Stores kStores>
struct ToYuv<Avx512<kStores>> : InOrderOf<Avx512<kStores>>, ByteAyuvOf<Avx512<kStores>> {
    using V = Avx512<kStores>;
    using Bytes = typename V::Bytes;
    using Pixels = typename V::Pixels;
    // RGB to be weighed. Eight registers hold no two rows of pixels: there they stay in memory.
    template <int kBytesPerPixel>
    struct Unloaded {
        const Byte* src;
    };
    template <int kB, int kG, int kR, class Rgb, int kRows>
    struct
        PairSums {  // not computed yet: PairUp does so quarter by quarter, to need fewer registers
        const Rgb* rows[2];
        static constexpr int kCount = kRows;

        PXB_INLINE __m512i Quarter(int i) const {  // a 32-bit lane for each column
            __m512i sum = Dot<kB, kG, kR>(_mm512_setzero_si512(), QuarterOf(*rows[0], i));
            if (kRows == 2) sum = Dot<kB, kG, kR>(sum, QuarterOf(*rows[1], i));
            return sum;
        }
    };

    // Weighing does not see X.
    template <int kBytesPerPixel>
    static PXB_INLINE auto Load(const Byte* src) {
        if constexpr (kFewRegisters)
            return Unloaded<kBytesPerPixel>{src};
        else
            return V::template LoadQuarters<kBytesPerPixel>(src);
    }
    // The weight of G may be more than a signed byte holds: it is added in two halves.
    template <int kB, int kG, int kR, int kOffset, class Rgb>
    static PXB_INLINE Bytes Weigh(const Rgb& a) {
        const __m512i offset = _mm512_set1_epi32(kOffset << 8);
        Pixels sums;
        for (int i = 0; i < 4; ++i) {
            const __m512i pixels = QuarterOf(a, i);
            sums.quarter[i] = Dot<0, kG - kG / 2, 0>(Dot<kB, kG / 2, kR>(offset, pixels), pixels);
        }
        return V::template TakeByte<1>(sums);
    }
    template <int kB, int kG, int kR, class Rgb>
    static PXB_INLINE PairSums<kB, kG, kR, Rgb, 1> WeighPairs(const Rgb& a) {
        return {{&a, nullptr}};
    }
    template <int kB, int kG, int kR, class Rgb>
    static PXB_INLINE PairSums<kB, kG, kR, Rgb, 2> WeighPairs(const Rgb& a, const Rgb& b) {
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
        return {_mm512_xor_si512(V::PickHalves(pairs, second_bytes),
                                 _mm512_set1_epi8(static_cast<char>(128)))};
    }

  private:
    static constexpr bool kFewRegisters = sizeof(void*) < 8;

    static PXB_INLINE __m512i QuarterOf(const Pixels& a, int i) { return a.quarter[i]; }
    template <int kBytesPerPixel>
    static PXB_INLINE __m512i QuarterOf(Unloaded<kBytesPerPixel> a, int i) {
        return V::template LoadQuarter<kBytesPerPixel>(a.src, i);
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE __m512i Dot(__m512i sum, __m512i pixels) {
        static_assert(kB < 128 && kG < 128 && kR < 128);
        const int weights = (kB & 0xFF) | (kG & 0xFF) << 8 | (kR & 0xFF) << 16;
        return _mm512_dpbusd_epi32(sum, pixels, _mm512_set1_epi32(weights));
    }
};

}  // namespace pxb::PXB_TARGET
