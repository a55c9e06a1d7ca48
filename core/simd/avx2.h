// AVX2: 32 pixels, 256-bit registers. Most operations work inside 128-bit blocks.
#pragma once
#include <immintrin.h>

#include <utility>

#include "core/rows.h"
#include "core/simd/memory.h"
#include "core/simd/weights.h"

namespace pxb::PXB_TARGET {

struct Avx2Register {
    using Register = __m256i;

    static PXB_INLINE Register Set16(int a) { return _mm256_set1_epi16(static_cast<short>(a)); }
    static PXB_INLINE Register And(Register a, Register b) { return _mm256_and_si256(a, b); }
    static PXB_INLINE Register Or(Register a, Register b) { return _mm256_or_si256(a, b); }
    static PXB_INLINE Register Xor(Register a, Register b) { return _mm256_xor_si256(a, b); }
    static PXB_INLINE Register LowBytes(Register a) { return And(a, Set16(0xFF)); }
    static PXB_INLINE Register Add16(Register a, Register b) { return _mm256_add_epi16(a, b); }
    static PXB_INLINE Register Sub16(Register a, Register b) { return _mm256_sub_epi16(a, b); }
    static PXB_INLINE Register AddSaturated16(Register a, Register b) {
        return _mm256_adds_epi16(a, b);
    }
    // Sums of neighbouring products of unsigned and signed bytes, saturated to 16 bits.
    static PXB_INLINE Register MultiplyAddBytes(Register a, Register b) {
        return _mm256_maddubs_epi16(a, b);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftLeft16(Register a) {
        return _mm256_slli_epi16(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRight16(Register a) {
        return _mm256_srli_epi16(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRightSigned16(Register a) {
        return _mm256_srai_epi16(a, kBits);
    }
    static PXB_INLINE Register PackBytes(Register a, Register b) {
        return _mm256_packus_epi16(a, b);
    }
    static PXB_INLINE Register ZipLow8(Register a, Register b) {
        return _mm256_unpacklo_epi8(a, b);
    }
    static PXB_INLINE Register ZipHigh8(Register a, Register b) {
        return _mm256_unpackhi_epi8(a, b);
    }
    // The low (high) words of the 32-bit lanes of a and b, in turn. Both together undo themselves.
    static PXB_INLINE Register LowWords(Register a, Register b) {
        return _mm256_blend_epi16(a, _mm256_slli_epi32(b, 16), 0b10101010);
    }
    static PXB_INLINE Register HighWords(Register a, Register b) {
        return _mm256_blend_epi16(_mm256_srli_epi32(a, 16), b, 0b10101010);
    }
};

template <Stores kStores>
struct Avx2 : Avx2Register {
    static constexpr bool kStreams = kStores == Stores::kStreamed;
    static constexpr int kPixels = 32;
    struct Bytes {
        __m256i all;
    };
    struct Weights {  // 256 w in words, as unpacking deals the bytes
        __m256i low, high;
    };
    struct Pixels {
        __m256i quarter[4];  // 8 pixels each
    };
    struct Backward {
        __m256i fives[3];  // 5 pixels in each block, and a byte of another
        __m128i last;      // 8 bytes
    };

    static PXB_INLINE Bytes Load(const Byte* src) { return {LoadAll(src)}; }
    static PXB_INLINE Bytes LoadEvens(const Byte* src) {
        return {Alternate(PackBytes(LowBytes(LoadAll(src)), ShiftRight16<8>(LoadAll(src + 31))))};
    }
    static PXB_INLINE Bytes LoadPairs(const Byte* first, const Byte* second) {
        const __m128i a = LoadBlock(first), b = LoadBlock(second);
        return {_mm256_set_m128i(_mm_unpackhi_epi8(a, b), _mm_unpacklo_epi8(a, b))};
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

    static PXB_INLINE void Store(Byte* dst, Bytes a) { StoreAll(dst, a.all); }
    static PXB_INLINE void StorePairs(Byte* first, Byte* second, Bytes pairs) {
        const __m256i split = Alternate(Split(pairs.all));
        StoreBlock(first, _mm256_castsi256_si128(split));
        StoreBlock(second, _mm256_extracti128_si256(split, 1));
    }
    static PXB_INLINE void StoreInTurn(Byte* dst, Bytes a, Bytes b) {
        const __m256i low = _mm256_unpacklo_epi8(a.all, b.all);
        const __m256i high = _mm256_unpackhi_epi8(a.all, b.all);
        StoreAll(dst, _mm256_permute2x128_si256(low, high, 0x20));
        StoreAll(dst + 32, _mm256_permute2x128_si256(low, high, 0x31));
    }
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
    static PXB_INLINE void StoreBgr(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StoreChannels<InOrder>(dst, b.all, g.all, r.all);
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
    static PXB_INLINE Weights WeightsOf(Bytes a) {
        const __m256i zero = _mm256_setzero_si256();
        return {ZipLow8(zero, a.all), ZipHigh8(zero, a.all)};
    }
    template <int kBytes, int kPart>
    static PXB_INLINE Weights LoadWeights(const Byte* src) {
        if constexpr (kBytes == 1) return WeightsOf(Load(src));
        const auto twice = [](const Byte* block) PXB_INLINE_LAMBDA {
            return _mm256_broadcastsi128_si256(LoadBlock(block));
        };
        const bool starts_low = 2 * kPart < kBytes, ends_low = 2 * kPart + 1 < kBytes;
        const __m256i all = ends_low ? twice(src) : starts_low ? LoadAll(src) : twice(src + 16);
        return {_mm256_shuffle_epi8(all, InBlocks<WeightOrder<kBytes, kPart, 0, 32>>()),
                _mm256_shuffle_epi8(all, InBlocks<WeightOrder<kBytes, kPart, 1, 32>>())};
    }
    template <int kPart>
    static PXB_INLINE Weights LoadWeightsOfX(const Byte* src) {
        const __m256i all = LoadAll(src + 32 * kPart);
        return {_mm256_shuffle_epi8(all, InBlocks<WeightOfXOrder<0>>()),
                _mm256_shuffle_epi8(all, InBlocks<WeightOfXOrder<1>>())};
    }
    // (b - a) 256 w / 2^16, of which the low byte, added modulo 2^8, is exact: a negative difference
    // counts as 2^16 more, which makes the quotient 256 w more.
    static PXB_INLINE Bytes Lerp(Bytes a, Bytes b, Weights w) {
        const auto share = [](__m256i pairs, __m256i weights) PXB_INLINE_LAMBDA {
            const __m256i difference = MultiplyAddBytes(pairs, Set16(0xFF01));  // 1, -1
            return LowBytes(_mm256_mulhi_epu16(difference, weights));
        };
        return {_mm256_add_epi8(a.all, PackBytes(share(ZipLow8(b.all, a.all), w.low),
                                                 share(ZipHigh8(b.all, a.all), w.high)))};
    }
    template <int kByte>
    static PXB_INLINE Bytes TakeByte(const Pixels& a) {
        const auto byte = [](__m256i p) PXB_INLINE_LAMBDA {
            const __m256i low = _mm256_srli_epi32(p, 8 * kByte);
            return kByte == 3 ? low : _mm256_and_si256(low, _mm256_set1_epi32(0xFF));
        };
        const __m256i mixed =
            _mm256_packus_epi16(_mm256_packus_epi32(byte(a.quarter[0]), byte(a.quarter[1])),
                                _mm256_packus_epi32(byte(a.quarter[2]), byte(a.quarter[3])));
        return {Gather(mixed)};
    }
    static PXB_INLINE Bytes Reverse(Bytes a) {
        return {SwapBlocks(_mm256_shuffle_epi8(
            a.all, TwiceInBlocks([](int i) PXB_INLINE_LAMBDA { return 15 - i; })))};
    }
    static PXB_INLINE Pixels Reverse(const Pixels& a) {
        Pixels pixels;
        for (int i = 0; i < 4; ++i)
            pixels.quarter[i] =
                SwapBlocks(_mm256_shuffle_epi32(a.quarter[3 - i], _MM_SHUFFLE(0, 1, 2, 3)));
        return pixels;
    }
    static PXB_INLINE Backward LoadBackward(const Byte* src) {
        const __m256i turn = TwiceInBlocks(
            [](int i) PXB_INLINE_LAMBDA { return i < 15 ? 13 - i / 3 * 3 + i % 3 : -1; });
        const __m128i turn_last =
            _mm_setr_epi8(7, 8, 3, 4, 5, 0, 1, 2, -1, -1, -1, -1, -1, -1, -1, -1);
        const auto fives = [=](int i) PXB_INLINE_LAMBDA {
            const Byte* const low = src + 80 - 30 * i;
            return _mm256_shuffle_epi8(_mm256_set_m128i(LoadBlock(low - 15), LoadBlock(low)), turn);
        };
        return {{fives(0), fives(1), fives(2)}, _mm_shuffle_epi8(LoadBlock(src), turn_last)};
    }
    // The byte too many of each block is where the next one begins.
    static PXB_INLINE void StoreBackward(Byte* dst, const Backward& a) {
        for (int i = 0; i < 3; ++i) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 30 * i),
                             _mm256_castsi256_si128(a.fives[i]));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 30 * i + 15),
                             _mm256_extracti128_si256(a.fives[i], 1));
        }
        _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + 88), a.last);
    }
    static PXB_INLINE Pixels ReverseYuy2(const Pixels& a) {
        const __m256i groups = TwiceInBlocks(
            [](int i) PXB_INLINE_LAMBDA { return 12 - i / 4 * 4 + (i % 2 ? i % 4 : 2 - i % 4); });
        Pixels pixels;
        for (int i = 0; i < 4; ++i)
            pixels.quarter[i] = SwapBlocks(_mm256_shuffle_epi8(a.quarter[3 - i], groups));
        return pixels;
    }
    static PXB_INLINE void Leave() {
        if (kStreams) _mm_sfence();
    }

    // For other texts over the same registers.
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
    static PXB_INLINE __m256i SwapBlocks(__m256i a) { return _mm256_permute2x128_si256(a, a, 1); }
    static PXB_INLINE __m128i LoadBlock(const Byte* src) {
        if (kStreams) PrefetchAhead(src);
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
    }
    struct InOrder {
        static constexpr PXB_INLINE int At(int i) { return i; }
    };
    // Channels whose bytes stand in another order, as packing leaves them: byte i of a block is in
    // its place Order::At(i). A shuffle puts each into its place in one of three outputs of 16 bytes a
    // block; blends gather them.
    template <class Order>
    static PXB_INLINE void StoreChannels(Byte* dst, __m256i b, __m256i g, __m256i r) {
        const __m256i bs = Place<0, Order>(b), gs = Place<1, Order>(g), rs = Place<2, Order>(r);
        const __m256i first16 = InTurn(bs, gs, rs);
        const __m256i second16 = InTurn(gs, rs, bs);
        const __m256i third16 = InTurn(rs, bs, gs);
        StoreAll(dst, _mm256_permute2x128_si256(first16, second16, 0x20));
        StoreAll(dst + 32, _mm256_blend_epi32(third16, first16, 0b11110000));
        StoreAll(dst + 64, _mm256_permute2x128_si256(second16, third16, 0x31));
    }
    // Sample i of a channel belongs into byte 3 i + channel of 48, here modulo 16.
    template <int kChannel, class Order>
    static PXB_INLINE __m256i Place(__m256i a) {
        return _mm256_shuffle_epi8(a, TwiceInBlocks([](int i) PXB_INLINE_LAMBDA {
                                       while (i % 3 != kChannel) i += 16;
                                       return Order::At(i / 3);
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
    static PXB_INLINE void StoreAll(Byte* dst, __m256i a) {
        if (kStreams)
            _mm256_stream_si256(reinterpret_cast<__m256i*>(dst), a);
        else
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), a);
    }
    // The constant whose byte i is Order::At(i), as an index into a block.
    template <class Order>
    static PXB_INLINE __m256i InBlocks() {
        return []<int... i>(std::integer_sequence<int, i...>) PXB_INLINE_LAMBDA {
            return _mm256_setr_epi8(static_cast<char>(Order::At(i) & ~0x70)...);
        }
        (std::make_integer_sequence<int, 32>());
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
