// AVX2: 32 pixels, 256-bit registers. Most operations work inside 128-bit blocks. What was gathered
// from RGB pixels is "dealt": groups of four pixels lie in the two blocks in turn, and stores put
// them in order.
#pragma once
#include <immintrin.h>

#include <utility>

#include "core/rows.h"
#include "core/simd/memory.h"

namespace pxb::PXB_TARGET {

template <Stores kStores>
struct Avx2 {
    static constexpr bool kStreams = kStores == Stores::kStreamed;
    static constexpr int kPixels = 32;
    static constexpr int kBgr0 = 4;
    struct Bytes {
        __m256i all;
    };
    struct Words {
        __m256i all;
    };
    // Bytes in another order, as packing leaves them: byte i of a block is in its place kPlace(i).
    template <int (*kPlace)(int)>
    struct Packed {
        __m256i all;
    };
    struct Crossed {
        __m256i all;  // Bytes, the two quarters in the middle exchanged
    };
    struct Pixels {
        __m256i quarter[4];  // 8 pixels each
    };
    struct Rgb {
        __m256i b, g, r;  // dealt
    };
    struct Dealt {
        __m256i all;  // Bytes, dealt
    };
    struct RowSums {
        __m256i all;  // of two neighbours
    };
    template <int kB, int kR>
    struct BlockSums {  // of four, still to be weighed: 16 bits would not hold the result
        __m256i b_less_g, g_less_r;
    };
    struct Uv {
        __m256i all;  // signed bytes u, v in each 16-bit lane
    };
    struct Weights {
        __m256i all;  // unsigned bytes in the order of Uv
    };
    struct Yuy2 {
        Bytes low, high;
        Uv uv_low, uv_high;
    };

    static PXB_INLINE Words Set(int value) {
        return {_mm256_set1_epi16(static_cast<short>(value))};
    }
    static PXB_INLINE Words Factor(int value) {
        Words words = Set(value);
        return words;
    }

    static PXB_INLINE Bytes Load(const Byte* src) { return {LoadAll(src)}; }
    template <int>
    static PXB_INLINE Bytes LoadFor(const Byte* src) {
        return Load(src);
    }
    template <int>
    static PXB_INLINE Bytes LoadPairsFor(const Byte* u, const Byte* v) {
        const __m128i us = LoadBlock(u), vs = LoadBlock(v);
        return {_mm256_set_m128i(_mm_unpackhi_epi8(us, vs), _mm_unpacklo_epi8(us, vs))};
    }
    static PXB_INLINE Uv UvOf(Bytes pairs) { return Signed(pairs.all); }
    template <int kStore>
    static PXB_INLINE Yuy2 LoadYuy2For(const Byte* src) {
        const __m256i a = LoadAll(src), b = LoadAll(src + 32);
        const bool cross = kStore == kBgr0;
        const __m256i low = cross ? a : _mm256_permute2x128_si256(a, b, 0x20);
        const __m256i high = cross ? b : _mm256_permute2x128_si256(a, b, 0x31);
        const __m256i twice =
            TwiceInBlocks([](int i) PXB_INLINE_LAMBDA { return i / 4 * 4 + i % 2 * 2 + 1; });
        return {{low},
                {high},
                Signed(_mm256_shuffle_epi8(low, twice)),
                Signed(_mm256_shuffle_epi8(high, twice))};
    }
    static PXB_INLINE Pixels LoadBgr(const Byte* src) {
        const __m256i widen = TwiceInBlocks(
            [](int i) PXB_INLINE_LAMBDA { return i % 4 < 3 ? i / 4 * 3 + i % 4 : -128; });
        return {{LoadQuarter(src, 0, widen), LoadQuarter(src, 1, widen), LoadQuarter(src, 2, widen),
                 LoadQuarter(src, 3, widen)}};
    }
    static PXB_INLINE Pixels LoadBgrx(const Byte* src) {
        return {{LoadAll(src), LoadAll(src + 32), LoadAll(src + 64), LoadAll(src + 96)}};
    }

    template <int kBytesPerPixel>
    static PXB_INLINE Rgb LoadRgb(const Byte* src) {
        constexpr int k = kBytesPerPixel;
        const __m256i fours = TwiceInBlocks(
            [](int i) PXB_INLINE_LAMBDA { return i < 12 ? i % 4 * k + i / 4 : -128; });
        __m256i q[4];  // in each block 4 bytes B, 4 G, 4 R
        for (int i = 0; i < 4; ++i)
            q[i] = k == 3 ? LoadQuarter(src, i, fours)
                          : _mm256_shuffle_epi8(LoadAll(src + 32 * i), fours);
        const __m256i bg01 = _mm256_unpacklo_epi32(q[0], q[1]);
        const __m256i bg23 = _mm256_unpacklo_epi32(q[2], q[3]);
        const __m256i r01 = _mm256_unpackhi_epi32(q[0], q[1]);
        const __m256i r23 = _mm256_unpackhi_epi32(q[2], q[3]);
        return {_mm256_unpacklo_epi64(bg01, bg23), _mm256_unpackhi_epi64(bg01, bg23),
                _mm256_unpacklo_epi64(r01, r23)};
    }

    static PXB_INLINE void Store(Byte* dst, Bytes a) { StoreAll(dst, a.all); }
    static PXB_INLINE void Store(Byte* dst, Dealt a) { StoreAll(dst, Gather(a.all)); }
    // Each quarter becomes 24 bytes, turned so that they stand where the output needs them.
    static PXB_INLINE void StoreBgr(Byte* dst, const Pixels& a) {
        const __m256i drop =
            TwiceInBlocks([](int i) PXB_INLINE_LAMBDA { return i < 12 ? i / 3 * 4 + i % 3 : -1; });
        const auto squeeze = [&](__m256i pixels, __m256i dwords) PXB_INLINE_LAMBDA {
            return _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(pixels, drop), dwords);
        };
        const __m256i p = squeeze(a.quarter[0], _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 3));
        const __m256i q = squeeze(a.quarter[1], _mm256_setr_epi32(2, 4, 5, 6, 3, 3, 0, 1));
        const __m256i r = squeeze(a.quarter[2], _mm256_setr_epi32(5, 6, 3, 3, 0, 1, 2, 4));
        const __m256i s = squeeze(a.quarter[3], _mm256_setr_epi32(3, 3, 0, 1, 2, 4, 5, 6));
        StoreAll(dst, _mm256_blend_epi32(p, q, 0b11000000));
        StoreAll(dst + 32, _mm256_blend_epi32(q, r, 0b11110000));
        StoreAll(dst + 64, _mm256_blend_epi32(r, s, 0b11111100));
    }
    static PXB_INLINE void StoreBgrx(Byte* dst, const Pixels& a) {
        for (int i = 0; i < 4; ++i) StoreAll(dst + 32 * i, a.quarter[i]);
    }
    // A shuffle puts each sample into its place in one of three outputs of 16 bytes a block; blends
    // gather them.
    static PXB_INLINE void StoreBgr(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StoreBgr(dst, Packed<InOrder>{b.all}, Packed<InOrder>{g.all}, Packed<InOrder>{r.all});
    }
    template <int (*kPlace)(int)>
    static PXB_INLINE void StoreBgr(Byte* dst, Packed<kPlace> b, Packed<kPlace> g,
                                    Packed<kPlace> r) {
        const __m256i bs = Place<0>(b), gs = Place<1>(g), rs = Place<2>(r);
        const __m256i first16 = InTurn(bs, gs, rs);
        const __m256i second16 = InTurn(gs, rs, bs);
        const __m256i third16 = InTurn(rs, bs, gs);
        StoreAll(dst, _mm256_permute2x128_si256(first16, second16, 0x20));
        StoreAll(dst + 32, _mm256_blend_epi32(third16, first16, 0b11110000));
        StoreAll(dst + 64, _mm256_permute2x128_si256(second16, third16, 0x31));
    }
    static PXB_INLINE void StoreBgr0(Byte* dst, Bytes b, Bytes g, Bytes r) {
        const Pixels pixels = Interleave(b.all, g.all, r.all);
        StoreBlocks(dst, dst + 64, pixels.quarter[0], pixels.quarter[1]);
        StoreBlocks(dst + 32, dst + 96, pixels.quarter[2], pixels.quarter[3]);
    }
    static PXB_INLINE void StoreBgr0(Byte* dst, Crossed b, Crossed g, Crossed r) {
        const Pixels pixels = Interleave(b.all, g.all, r.all);
        StoreBlocks(dst, dst + 32, pixels.quarter[0], pixels.quarter[1]);
        StoreBlocks(dst + 64, dst + 96, pixels.quarter[2], pixels.quarter[3]);
    }

    static PXB_INLINE void StorePairs(Byte* u, Byte* v, Bytes pairs) {
        const __m256i uv = Alternate(Split(pairs.all));
        StoreBlock(u, _mm256_castsi256_si128(uv));
        StoreBlock(v, _mm256_extracti128_si256(uv, 1));
    }
    static PXB_INLINE void StorePairs(Byte* u, Byte* v, Dealt pairs) {
        const __m256i split = Split(pairs.all);
        const __m128i low = _mm256_castsi256_si128(split);
        const __m128i high = _mm256_extracti128_si256(split, 1);
        StoreBlock(u, _mm_unpacklo_epi16(low, high));
        StoreBlock(v, _mm_unpackhi_epi16(low, high));
    }
    static PXB_INLINE void StoreYuy2(Byte* dst, Bytes luma, Bytes pairs) {
        const __m256i low = _mm256_unpacklo_epi8(luma.all, pairs.all);
        const __m256i high = _mm256_unpackhi_epi8(luma.all, pairs.all);
        StoreAll(dst, _mm256_permute2x128_si256(low, high, 0x20));
        StoreAll(dst + 32, _mm256_permute2x128_si256(low, high, 0x31));
    }
    static PXB_INLINE void StoreYuy2(Byte* dst, Dealt luma, Dealt pairs) {
        StoreAll(dst, Alternate(_mm256_unpacklo_epi8(luma.all, pairs.all)));
        StoreAll(dst + 32, Alternate(_mm256_unpackhi_epi8(luma.all, pairs.all)));
    }

    static PXB_INLINE Bytes Evens(Bytes a, Bytes b) {
        const __m256i low = _mm256_set1_epi16(0xFF);
        return {Alternate(
            _mm256_packus_epi16(_mm256_and_si256(a.all, low), _mm256_and_si256(b.all, low)))};
    }
    static PXB_INLINE Bytes Odds(Bytes a, Bytes b) {
        return {Alternate(
            _mm256_packus_epi16(_mm256_srli_epi16(a.all, 8), _mm256_srli_epi16(b.all, 8)))};
    }
    static PXB_INLINE Bytes Average(Bytes a, Bytes b) { return {_mm256_avg_epu8(a.all, b.all)}; }

    // G counts with both its neighbours: so that each of the two products of a pixel stays below
    // 2^15, though their sum needs 16 bits without sign.
    template <int kB, int kG, int kR, int kOffset>
    static PXB_INLINE Dealt WeighBgr(const Rgb& a) {
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

    static PXB_INLINE Weights FactorU(int u) { return FactorUv(u, 0); }
    static PXB_INLINE Weights FactorV(int v) { return FactorUv(0, v); }
    static PXB_INLINE Weights FactorUv(int u, int v) { return {Factor(u | v << 8).all}; }
    static PXB_INLINE Words Weigh(Uv uv, Weights weights) {
        return {_mm256_maddubs_epi16(weights.all, uv.all)};
    }
    static PXB_INLINE Words MulEven(Bytes a, Words factor) {
        return {_mm256_maddubs_epi16(a.all, factor.all)};
    }
    static PXB_INLINE Words MulOdd(Bytes a, Words factor) {
        return {_mm256_maddubs_epi16(a.all, _mm256_slli_epi16(factor.all, 8))};
    }
    template <int kStore>
    static PXB_INLINE auto Join(Words even, Words odd) {
        const __m256i apart = _mm256_packus_epi16(even.all, odd.all);
        if constexpr (kStore == kBgr0)
            return Bytes{_mm256_shuffle_epi8(apart, TwiceInBlocks(EvensFirst))};
        else
            return Packed<EvensFirst>{apart};
    }
    template <int kStore>
    static PXB_INLINE auto Narrow(Words low, Words high) {
        const __m256i bytes = _mm256_packus_epi16(low.all, high.all);
        if constexpr (kStore == kBgr0)
            return Crossed{bytes};
        else
            return Bytes{bytes};
    }
    template <int kByte>
    static PXB_INLINE Bytes NarrowByte(const Pixels& a) {
        const auto byte = [](__m256i p) PXB_INLINE_LAMBDA {
            const __m256i low = _mm256_srli_epi32(p, 8 * kByte);
            return kByte == 3 ? low : _mm256_and_si256(low, _mm256_set1_epi32(0xFF));
        };
        const __m256i mixed =
            _mm256_packus_epi16(_mm256_packus_epi32(byte(a.quarter[0]), byte(a.quarter[1])),
                                _mm256_packus_epi32(byte(a.quarter[2]), byte(a.quarter[3])));
        return {Gather(mixed)};
    }

    static PXB_INLINE Words Add(Words a, Words b) { return {_mm256_add_epi16(a.all, b.all)}; }
    static PXB_INLINE Words Sub(Words a, Words b) { return {_mm256_sub_epi16(a.all, b.all)}; }
    static PXB_INLINE Words AddSaturated(Words a, Words b) {
        return {_mm256_adds_epi16(a.all, b.all)};
    }
    template <int kBits>
    static PXB_INLINE Words ShiftRight(Words a) {
        return {_mm256_srai_epi16(a.all, kBits)};
    }
    static PXB_INLINE void Leave() {
        if (kStreams) _mm_sfence();
    }

  private:
    static PXB_INLINE __m256i LoadAll(const Byte* src) {
        if (kStreams) PrefetchAhead(src);
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src));
    }
    static PXB_INLINE __m256i Gather(__m256i dealt) {
        return _mm256_permutevar8x32_epi32(dealt, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
    }
    // Quarter i of 32 pixels of 3 bytes: 8 pixels, 12 bytes in each block, shuffled. Blending loads
    // leaves the shuffle ports alone. The last 12 bytes are loaded 4 bytes early, so that nothing
    // behind the pixels is read; indices to be zeroed are -128 for that reason.
    static PXB_INLINE __m256i LoadQuarter(const Byte* src, int i, __m256i shuffle) {
        const Byte* const low = src + 24 * i;
        const Byte* const high = i < 3 ? low + 12 : low + 8;
        const __m256i late = _mm256_set_m128i(_mm_set1_epi8(4), _mm_setzero_si128());
        const __m256i both = _mm256_blend_epi32(_mm256_castsi128_si256(LoadBlock(low)),
                                                _mm256_broadcastsi128_si256(LoadBlock(high)), 0xF0);
        return _mm256_shuffle_epi8(both, i < 3 ? shuffle : _mm256_add_epi8(shuffle, late));
    }
    static PXB_INLINE __m256i Alternate(__m256i a) {
        return _mm256_permute4x64_epi64(a, _MM_SHUFFLE(3, 1, 2, 0));
    }
    static PXB_INLINE __m128i LoadBlock(const Byte* src) {
        if (kStreams) PrefetchAhead(src);
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
    }
    static PXB_INLINE Uv Signed(__m256i uv) {
        return {_mm256_xor_si256(uv, _mm256_set1_epi8(static_cast<char>(0x80)))};
    }
    static constexpr int InOrder(int i) { return i; }
    static constexpr int EvensFirst(int i) { return i / 2 + i % 2 * 8; }
    // Sample i of a channel belongs into byte 3 i + channel of 48, here modulo 16.
    template <int kChannel, int (*kPlace)(int)>
    static PXB_INLINE __m256i Place(Packed<kPlace> a) {
        return _mm256_shuffle_epi8(a.all, TwiceInBlocks([](int i) PXB_INLINE_LAMBDA {
                                       while (i % 3 != kChannel) i += 16;
                                       return kPlace(i / 3);
                                   }));
    }
    // Byte i of x, y or z, in turn.
    static PXB_INLINE __m256i InTurn(__m256i x, __m256i y, __m256i z) {
        const __m256i ys =
            TwiceInBlocks([](int i) PXB_INLINE_LAMBDA { return i % 3 == 1 ? -1 : 0; });
        const __m256i zs =
            TwiceInBlocks([](int i) PXB_INLINE_LAMBDA { return i % 3 == 2 ? -1 : 0; });
        return _mm256_blendv_epi8(_mm256_blendv_epi8(x, y, ys), z, zs);
    }
    // Of neighbours, times the weight.
    template <int kWeight>
    static PXB_INLINE __m256i SumPairs(__m256i a) {
        return _mm256_maddubs_epi16(a, _mm256_set1_epi8(kWeight));
    }
    // Bytes U V U V ... of the sums.
    static PXB_INLINE __m256i HighBytes(RowSums u, RowSums v) {
        return _mm256_blendv_epi8(_mm256_srli_epi16(u.all, 8), v.all, Set(0xFF00).all);
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
        return _mm256_unpacklo_epi16(Set(kB * 128).all, Set(-kR * 128).all);
    }
    // In each block the even bytes first.
    static PXB_INLINE __m256i Split(__m256i a) {
        return _mm256_shuffle_epi8(
            a, TwiceInBlocks([](int i) PXB_INLINE_LAMBDA { return i % 8 * 2 + i / 8; }));
    }
    static PXB_INLINE void StoreBlock(Byte* dst, __m128i a) {
        if (kStreams)
            _mm_stream_si128(reinterpret_cast<__m128i*>(dst), a);
        else
            _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), a);
    }
    // The low blocks of both to one place, the high ones to another. Two small stores are cheaper
    // than a second permutation.
    static PXB_INLINE void StoreBlocks(Byte* low, Byte* high, __m256i a, __m256i b) {
        StoreBlock(low, _mm256_castsi256_si128(a));
        StoreBlock(low + 16, _mm256_castsi256_si128(b));
        StoreAll(high, _mm256_permute2x128_si256(a, b, 0x31));
    }
    // Each quarter of the result takes a quarter of each block.
    static PXB_INLINE Pixels Interleave(__m256i b, __m256i g, __m256i r) {
        const __m256i zero = _mm256_setzero_si256();
        const __m256i bg_low = _mm256_unpacklo_epi8(b, g), bg_high = _mm256_unpackhi_epi8(b, g);
        const __m256i r0_low = _mm256_unpacklo_epi8(r, zero);
        const __m256i r0_high = _mm256_unpackhi_epi8(r, zero);
        return {{_mm256_unpacklo_epi16(bg_low, r0_low), _mm256_unpackhi_epi16(bg_low, r0_low),
                 _mm256_unpacklo_epi16(bg_high, r0_high), _mm256_unpackhi_epi16(bg_high, r0_high)}};
    }
    static PXB_INLINE void StoreAll(Byte* dst, __m256i a) {
        if (kStreams)
            _mm256_stream_si256(reinterpret_cast<__m256i*>(dst), a);
        else
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), a);
    }
    // The constant whose bytes i and 16 + i are at(i).
    template <class At>
    static PXB_INLINE __m256i TwiceInBlocks(At at) {
        return [=]<int... i>(std::integer_sequence<int, i...>) PXB_INLINE_LAMBDA {
            return _mm256_broadcastsi128_si256(_mm_setr_epi8(static_cast<char>(at(i))...));
        }
        (std::make_integer_sequence<int, 16>());
    }
};

}  // namespace pxb::PXB_TARGET
