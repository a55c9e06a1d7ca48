// Colour arithmetic in AVX2: byte multiply-adds inside 128-bit blocks. On the way to RGB samples keep
// the order in which packing leaves them until they are stored. What was gathered from RGB pixels is
// "dealt": groups of four pixels lie in the two blocks in turn, and stores put them in order.
#pragma once
#include "convert/simd/scalar.h"
#include "core/simd/avx2.h"

namespace pxb::PXB_TARGET {

template <Stores kStores, int kBytesPerPixel>
struct ToRgb<Avx2<kStores>, kBytesPerPixel> : ByteLanesOf<Avx2<kStores>> {
    using V = Avx2<kStores>;
    using L = ByteLanesOf<V>;
    using typename L::Lanes;
    using typename L::Packed;
    using typename L::Samples;
    using typename L::Uv;
    struct EvensFirst {
        __m256i all;  // Samples: in each block the even bytes before the odd ones
        static constexpr PXB_INLINE int At(int i) { return i / 2 + i % 2 * 8; }
    };
    struct Crossed {
        __m256i all;  // Samples: the two quarters in the middle exchanged
    };

    static PXB_INLINE Samples LoadLuma(const Byte* src) { return {V::LoadAll(src)}; }
    static PXB_INLINE Uv LoadUv(const Byte* u, const Byte* v) {
        return L::Signed(V::LoadPairs(u, v).all);
    }
    static PXB_INLINE Uv LoadUv(const Byte* uv) { return L::Signed(V::LoadAll(uv)); }
    static PXB_INLINE Packed LoadYuy2(const Byte* src) {
        const __m256i a = V::LoadAll(src), b = V::LoadAll(src + 32);
        const bool cross = kBytesPerPixel == 4;  // see Narrow
        const __m256i low = cross ? a : _mm256_permute2x128_si256(a, b, 0x20);
        const __m256i high = cross ? b : _mm256_permute2x128_si256(a, b, 0x31);
        const __m256i twice =
            V::TwiceInBlocks([](int i) PXB_INLINE_LAMBDA { return i / 4 * 4 + i % 2 * 2 + 1; });
        return {{low},
                {high},
                L::Signed(_mm256_shuffle_epi8(low, twice)),
                L::Signed(_mm256_shuffle_epi8(high, twice))};
    }

    static PXB_INLINE auto Join(Lanes even, Lanes odd) {
        const __m256i apart = _mm256_packus_epi16(even.all, odd.all);
        if constexpr (kBytesPerPixel == 4)
            return Samples{_mm256_shuffle_epi8(apart, V::TwiceInBlocks([](int i) PXB_INLINE_LAMBDA {
                                                   return EvensFirst::At(i);
                                               }))};
        else
            return EvensFirst{apart};
    }
    static PXB_INLINE auto Narrow(Lanes low, Lanes high) {
        const __m256i bytes = _mm256_packus_epi16(low.all, high.all);
        if constexpr (kBytesPerPixel == 4)
            return Crossed{bytes};
        else
            return Samples{bytes};
    }
    static PXB_INLINE void Store(Byte* dst, Samples b, Samples g, Samples r) {
        if constexpr (kBytesPerPixel == 3)
            V::template StoreChannels<typename V::InOrder>(dst, b.all, g.all, r.all);
        else
            StoreBgr0(dst, dst + 64, dst + 32, dst + 96, b.all, g.all, r.all);
    }
    static PXB_INLINE void Store(Byte* dst, EvensFirst b, EvensFirst g, EvensFirst r) {
        V::template StoreChannels<EvensFirst>(dst, b.all, g.all, r.all);
    }
    static PXB_INLINE void Store(Byte* dst, Crossed b, Crossed g, Crossed r) {
        StoreBgr0(dst, dst + 32, dst + 64, dst + 96, b.all, g.all, r.all);
    }

  private:
    // Each interleaved register has four pixels of each block: the low blocks belong to the first
    // and third place, the high ones to the second and fourth.
    static PXB_INLINE void StoreBgr0(Byte* low01, Byte* high01, Byte* low23, Byte* high23,
                                     __m256i b, __m256i g, __m256i r) {
        const __m256i zero = _mm256_setzero_si256();
        const __m256i bg_low = _mm256_unpacklo_epi8(b, g), bg_high = _mm256_unpackhi_epi8(b, g);
        const __m256i r0_low = _mm256_unpacklo_epi8(r, zero);
        const __m256i r0_high = _mm256_unpackhi_epi8(r, zero);
        StoreBlocks(low01, high01, _mm256_unpacklo_epi16(bg_low, r0_low),
                    _mm256_unpackhi_epi16(bg_low, r0_low));
        StoreBlocks(low23, high23, _mm256_unpacklo_epi16(bg_high, r0_high),
                    _mm256_unpackhi_epi16(bg_high, r0_high));
    }
    // The low blocks of both to one place, the high ones to another. Two small stores are cheaper
    // than a second permutation.
    static PXB_INLINE void StoreBlocks(Byte* low, Byte* high, __m256i a, __m256i b) {
        V::StoreBlock(low, _mm256_castsi256_si128(a));
        V::StoreBlock(low + 16, _mm256_castsi256_si128(b));
        V::StoreAll(high, _mm256_permute2x128_si256(a, b, 0x31));
    }
};

template <Stores kStores>
struct ToYuv<Avx2<kStores>> : ByteAyuvOf<Avx2<kStores>> {
    using V = Avx2<kStores>;
    struct Rgb {
        __m256i b, g, r;  // dealt
    };
    struct Dealt {
        __m256i all;
    };
    struct RowSums {
        __m256i all;  // of two neighbours
    };
    template <int kB, int kR>
    struct BlockSums {  // of four, still to be weighed: 16 bits would not hold the result
        __m256i b_less_g, g_less_r;
    };

    template <int kBytesPerPixel>
    static PXB_INLINE Rgb Load(const Byte* src) {
        constexpr int k = kBytesPerPixel;
        const __m256i fours = V::TwiceInBlocks(
            [](int i) PXB_INLINE_LAMBDA { return i < 12 ? i % 4 * k + i / 4 : -128; });
        __m256i q[4];  // in each block 4 bytes B, 4 G, 4 R
        for (int i = 0; i < 4; ++i)
            q[i] = k == 3 ? V::LoadQuarter(src, i, fours)
                          : _mm256_shuffle_epi8(V::LoadAll(src + 32 * i), fours);
        const __m256i bg01 = _mm256_unpacklo_epi32(q[0], q[1]);
        const __m256i bg23 = _mm256_unpacklo_epi32(q[2], q[3]);
        const __m256i r01 = _mm256_unpackhi_epi32(q[0], q[1]);
        const __m256i r23 = _mm256_unpackhi_epi32(q[2], q[3]);
        return {_mm256_unpacklo_epi64(bg01, bg23), _mm256_unpackhi_epi64(bg01, bg23),
                _mm256_unpacklo_epi64(r01, r23)};
    }
    // G counts with both its neighbours: so that each of the two products of a pixel stays below
    // 2^15, though their sum needs 16 bits without sign.
    template <int kB, int kG, int kR, int kOffset>
    static PXB_INLINE Dealt Weigh(const Rgb& a) {
        constexpr int kSecondG = 128 - kR, kFirstG = kG - kSecondG;
        static_assert(kB + kFirstG <= 128 && kFirstG >= 0 && kFirstG < 128 && kSecondG < 128);
        const __m256i bg = _mm256_set1_epi16(kB | kFirstG << 8);
        const __m256i rg = _mm256_set1_epi16(kR | kSecondG << 8);
        const __m256i low =
            _mm256_add_epi16(_mm256_maddubs_epi16(_mm256_unpacklo_epi8(a.b, a.g), bg),
                             _mm256_maddubs_epi16(_mm256_unpacklo_epi8(a.r, a.g), rg));
        const __m256i high =
            _mm256_add_epi16(_mm256_maddubs_epi16(_mm256_unpackhi_epi8(a.b, a.g), bg),
                             _mm256_maddubs_epi16(_mm256_unpackhi_epi8(a.r, a.g), rg));
        const __m256i dealt =
            _mm256_packus_epi16(_mm256_srli_epi16(low, 8), _mm256_srli_epi16(high, 8));
        return {_mm256_add_epi8(dealt, _mm256_set1_epi8(kOffset))};
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE RowSums WeighPairs(const Rgb& a) {
        return {_mm256_add_epi16(_mm256_add_epi16(SumPairs<kB>(a.b), SumPairs<kG>(a.g)),
                                 SumPairs<kR>(a.r))};
    }
    // Weights that sum to 0 weigh differences of channels: two of them instead of three channels.
    template <int kB, int kG, int kR>
    static PXB_INLINE BlockSums<kB, kR> WeighPairs(const Rgb& top, const Rgb& bottom) {
        static_assert(kB + kG + kR == 0);
        const __m256i b = _mm256_add_epi16(SumPairs<1>(top.b), SumPairs<1>(bottom.b));
        const __m256i g = _mm256_add_epi16(SumPairs<1>(top.g), SumPairs<1>(bottom.g));
        const __m256i r = _mm256_add_epi16(SumPairs<1>(top.r), SumPairs<1>(bottom.r));
        return {_mm256_sub_epi16(b, g), _mm256_sub_epi16(g, r)};
    }
    template <class SumsU, class SumsV>
    static PXB_INLINE Dealt PairUp(const SumsU& u, const SumsV& v) {
        return {_mm256_xor_si256(HighBytes(u, v), _mm256_set1_epi8(static_cast<char>(128)))};
    }

    static PXB_INLINE void Store(Byte* dst, Dealt a) { V::StoreAll(dst, V::Gather(a.all)); }
    static PXB_INLINE void StorePairs(Byte* u, Byte* v, Dealt pairs) {
        const __m256i split = V::Split(pairs.all);
        const __m128i low = _mm256_castsi256_si128(split);
        const __m128i high = _mm256_extracti128_si256(split, 1);
        V::StoreBlock(u, _mm_unpacklo_epi16(low, high));
        V::StoreBlock(v, _mm_unpackhi_epi16(low, high));
    }
    static PXB_INLINE void StoreYuy2(Byte* dst, Dealt luma, Dealt pairs) {
        V::StoreAll(dst, V::Alternate(_mm256_unpacklo_epi8(luma.all, pairs.all)));
        V::StoreAll(dst + 32, V::Alternate(_mm256_unpackhi_epi8(luma.all, pairs.all)));
    }

  private:
    // Of neighbours, times the weight.
    template <int kWeight>
    static PXB_INLINE __m256i SumPairs(__m256i a) {
        return _mm256_maddubs_epi16(a, _mm256_set1_epi8(kWeight));
    }
    // Bytes U V U V ... of the sums.
    static PXB_INLINE __m256i HighBytes(RowSums u, RowSums v) {
        return _mm256_blendv_epi8(_mm256_srli_epi16(u.all, 8), v.all, V::Set16(0xFF00));
    }
    template <int kBu, int kRu, int kBv, int kRv>
    static PXB_INLINE __m256i HighBytes(const BlockSums<kBu, kRu>& u,
                                        const BlockSums<kBv, kRv>& v) {
        const auto pairs = [](__m256i us, __m256i vs) PXB_INLINE_LAMBDA {
            return _mm256_blend_epi16(_mm256_srli_epi32(us, 16), vs, 0b10101010);
        };
        return _mm256_packs_epi16(pairs(WeighLow(u), WeighLow(v)),
                                  pairs(WeighHigh(u), WeighHigh(v)));
    }
    // In 32 bits, times 128: the upper 16 are the sum >> 9.
    template <int kB, int kR>
    static PXB_INLINE __m256i WeighLow(const BlockSums<kB, kR>& sums) {
        return _mm256_madd_epi16(_mm256_unpacklo_epi16(sums.b_less_g, sums.g_less_r),
                                 Weights128<kB, kR>());
    }
    template <int kB, int kR>
    static PXB_INLINE __m256i WeighHigh(const BlockSums<kB, kR>& sums) {
        return _mm256_madd_epi16(_mm256_unpackhi_epi16(sums.b_less_g, sums.g_less_r),
                                 Weights128<kB, kR>());
    }
    template <int kB, int kR>
    static PXB_INLINE __m256i Weights128() {
        return _mm256_unpacklo_epi16(V::Set16(kB * 128), V::Set16(-kR * 128));
    }
};

}  // namespace pxb::PXB_TARGET
