// AVX-512 with its byte permutations and dot products: 64 pixels, 512-bit registers. Bytes move
// across the whole register in one step.
#pragma once
#include <immintrin.h>

#include <utility>

#include "core/rows.h"
#include "core/simd/memory.h"
#include "core/simd/weights.h"

namespace pxb::PXB_TARGET {

struct Avx512Register {
    using Register = __m512i;

    static PXB_INLINE Register Set16(int a) { return _mm512_set1_epi16(static_cast<short>(a)); }
    static PXB_INLINE Register And(Register a, Register b) { return _mm512_and_si512(a, b); }
    static PXB_INLINE Register Or(Register a, Register b) { return _mm512_or_si512(a, b); }
    static PXB_INLINE Register Xor(Register a, Register b) { return _mm512_xor_si512(a, b); }
    static PXB_INLINE Register LowBytes(Register a) { return And(a, Set16(0xFF)); }
    static PXB_INLINE Register Add16(Register a, Register b) { return _mm512_add_epi16(a, b); }
    static PXB_INLINE Register Sub16(Register a, Register b) { return _mm512_sub_epi16(a, b); }
    static PXB_INLINE Register AddSaturated16(Register a, Register b) {
        return _mm512_adds_epi16(a, b);
    }
    // Sums of neighbouring products of unsigned and signed bytes, saturated to 16 bits.
    static PXB_INLINE Register MultiplyAddBytes(Register a, Register b) {
        return _mm512_maddubs_epi16(a, b);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftLeft16(Register a) {
        return _mm512_slli_epi16(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRight16(Register a) {
        return _mm512_srli_epi16(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRightSigned16(Register a) {
        return _mm512_srai_epi16(a, kBits);
    }
    static PXB_INLINE Register PackBytes(Register a, Register b) {
        return _mm512_packus_epi16(a, b);
    }
    static PXB_INLINE Register ZipLow8(Register a, Register b) {
        return _mm512_unpacklo_epi8(a, b);
    }
    static PXB_INLINE Register ZipHigh8(Register a, Register b) {
        return _mm512_unpackhi_epi8(a, b);
    }
    // The low (high) words of the 32-bit lanes of a and b, in turn. Both together undo themselves.
    static PXB_INLINE Register LowWords(Register a, Register b) {
        return Or(And(a, _mm512_set1_epi32(0xFFFF)), _mm512_slli_epi32(b, 16));
    }
    static PXB_INLINE Register HighWords(Register a, Register b) {
        return Or(_mm512_srli_epi32(a, 16), And(b, _mm512_set1_epi32(~0xFFFF)));
    }
};

template <Stores kStores>
struct Avx512 : Avx512Register {
    static constexpr bool kStreams = kStores == Stores::kStreamed;
    static constexpr int kPixels = 64;
    struct Bytes {
        __m512i all;
    };
    struct Weights {  // 256 w in words, as unpacking deals the bytes
        __m512i low, high;
    };
    struct Pixels {
        __m512i quarter[4];  // 16 pixels each
    };
    struct Backward {
        __m512i third[3];  // 64 bytes each
    };

    static PXB_INLINE Bytes Load(const Byte* src) { return {LoadAll(src)}; }
    static PXB_INLINE Bytes LoadEvens(const Byte* src) {
        return {Pick(LoadAll(src), LoadAll(src + 63),
                     [](int i) PXB_INLINE_LAMBDA { return 2 * i + i / 32; })};
    }
    static PXB_INLINE Bytes LoadPairs(const Byte* first, const Byte* second) {
        return {Pick(LoadHalf(first), LoadHalf(second),
                     [](int i) PXB_INLINE_LAMBDA { return i / 2 + i % 2 * 64; })};
    }
    static PXB_INLINE Pixels LoadBgr(const Byte* src) {
        Pixels pixels = LoadQuarters<3>(src);
        for (__m512i& quarter : pixels.quarter)
            quarter = _mm512_and_si512(quarter, _mm512_set1_epi32(0x00FFFFFF));
        return pixels;
    }
    static PXB_INLINE Pixels LoadBgrx(const Byte* src) { return LoadQuarters<4>(src); }

    static PXB_INLINE void Store(Byte* dst, Bytes a) { StoreAll(dst, a.all); }
    static PXB_INLINE void StorePairs(Byte* first, Byte* second, Bytes pairs) {
        const __m512i split = _mm512_permutexvar_epi8(
            Indices([](int i) PXB_INLINE_LAMBDA { return i % 32 * 2 + i / 32; }), pairs.all);
        StoreHalf(first, _mm512_castsi512_si256(split));
        StoreHalf(second, _mm512_extracti64x4_epi64(split, 1));
    }
    static PXB_INLINE void StoreInTurn(Byte* dst, Bytes a, Bytes b) {
        const auto interleave = [](int i) PXB_INLINE_LAMBDA { return i / 2 + i % 2 * 64; };
        StoreAll(dst, Pick(a.all, b.all, interleave));
        StoreAll(dst + 64,
                 Pick(a.all, b.all, [=](int i) PXB_INLINE_LAMBDA { return interleave(i) + 32; }));
    }

    static PXB_INLINE void StoreBgr(Byte* dst, const Pixels& a) {
        StoreAll(dst, Squeeze<0>(a));
        StoreAll(dst + 64, Squeeze<1>(a));
        StoreAll(dst + 128, Squeeze<2>(a));
    }
    static PXB_INLINE void StoreBgrx(Byte* dst, const Pixels& a) {
        for (int i = 0; i < 4; ++i) StoreAll(dst + 64 * i, a.quarter[i]);
    }
    static PXB_INLINE void StoreBgr(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StoreChannels<InOrder>(dst, b.all, g.all, r.all);
    }

    static PXB_INLINE Bytes Evens(Bytes a, Bytes b) {
        return {Pick(a.all, b.all, [](int i) PXB_INLINE_LAMBDA { return 2 * i; })};
    }
    static PXB_INLINE Bytes Odds(Bytes a, Bytes b) {
        return {Pick(a.all, b.all, [](int i) PXB_INLINE_LAMBDA { return 2 * i + 1; })};
    }
    static PXB_INLINE Bytes Average(Bytes a, Bytes b) { return {_mm512_avg_epu8(a.all, b.all)}; }
    static PXB_INLINE Weights WeightsOf(Bytes a) {
        const __m512i zero = _mm512_setzero_si512();
        return {ZipLow8(zero, a.all), ZipHigh8(zero, a.all)};
    }
    template <int kBytes, int kPart>
    static PXB_INLINE Weights LoadWeights(const Byte* src) {
        if constexpr (kBytes == 1) return WeightsOf(Load(src));
        const __m512i all = LoadAll(src);
        return {PickOrZero<WeightOrder<kBytes, kPart, 0, 64>>(all),
                PickOrZero<WeightOrder<kBytes, kPart, 1, 64>>(all)};
    }
    template <int kPart>
    static PXB_INLINE Weights LoadWeightsOfX(const Byte* src) {
        const __m512i all = LoadAll(src + 64 * kPart);
        const auto low = [](int i) PXB_INLINE_LAMBDA { return WeightOfXOrder<0>::At(i % 16); };
        const auto high = [](int i) PXB_INLINE_LAMBDA { return WeightOfXOrder<1>::At(i % 16); };
        return {_mm512_shuffle_epi8(all, Indices(low)), _mm512_shuffle_epi8(all, Indices(high))};
    }
    // (b - a) 256 w / 2^16, of which the low byte, added modulo 2^8, is exact: a negative difference
    // counts as 2^16 more, which makes the quotient 256 w more.
    static PXB_INLINE Bytes Lerp(Bytes a, Bytes b, Weights w) {
        const auto share = [](__m512i pairs, __m512i weights) PXB_INLINE_LAMBDA {
            const __m512i difference = MultiplyAddBytes(pairs, Set16(0xFF01));  // 1, -1
            return LowBytes(_mm512_mulhi_epu16(difference, weights));
        };
        return {_mm512_add_epi8(a.all, PackBytes(share(ZipLow8(b.all, a.all), w.low),
                                                 share(ZipHigh8(b.all, a.all), w.high)))};
    }
    template <int kByte>
    static PXB_INLINE Bytes TakeByte(const Pixels& a) {
        return {PickHalves(a, [](int i) PXB_INLINE_LAMBDA { return i % 32 * 4 + kByte; })};
    }
    static PXB_INLINE Bytes Reverse(Bytes a) {
        return {_mm512_permutexvar_epi8(Indices([](int i) PXB_INLINE_LAMBDA { return 63 - i; }),
                                        a.all)};
    }
    static PXB_INLINE Pixels Reverse(const Pixels& a) {
        return ReverseLanes(a, [](int i) PXB_INLINE_LAMBDA { return i; });
    }
    static PXB_INLINE Backward LoadBackward(const Byte* src) {
        return {{LoadThird<0, 64>(src), LoadThird<1, 1>(src), LoadThird<2, 0>(src)}};
    }
    static PXB_INLINE void StoreBackward(Byte* dst, const Backward& a) {
        for (int i = 0; i < 3; ++i) StoreAll(dst + 64 * i, a.third[i]);
    }
    static PXB_INLINE Pixels ReverseYuy2(const Pixels& a) {
        return ReverseLanes(a, [](int i) PXB_INLINE_LAMBDA { return i % 2 ? i : 2 - i; });
    }
    static PXB_INLINE void Leave() {
        if (kStreams) _mm_sfence();
    }

    // For other texts over the same registers.
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
    // Byte i of the result is byte Order::At(i) of a, or 0 where that is negative.
    template <class Order>
    static PXB_INLINE __m512i PickOrZero(__m512i a) {
        const auto at = [](int i) PXB_INLINE_LAMBDA { return Order::At(i); };
        const __mmask64 kept = Mask([=](int i) PXB_INLINE_LAMBDA { return at(i) >= 0; });
        return _mm512_maskz_permutexvar_epi8(kept, Indices(at), a);
    }
    // Byte i of each lane is byte at(i) of the lane that takes its place.
    template <class At>
    static PXB_INLINE Pixels ReverseLanes(const Pixels& a, At at) {
        const __m512i lanes =
            Indices([=](int i) PXB_INLINE_LAMBDA { return 60 - i / 4 * 4 + at(i % 4); });
        Pixels pixels;
        for (int i = 0; i < 4; ++i)
            pixels.quarter[i] = _mm512_permutexvar_epi8(lanes, a.quarter[3 - i]);
        return pixels;
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
    // Third k of 64 pixels of 3 bytes in reverse order. It comes from 128 bytes, the first of which
    // is byte kFirst.
    template <int k, int kFirst>
    static PXB_INLINE __m512i LoadThird(const Byte* src) {
        return Pick(LoadAll(src + kFirst), LoadAll(src + kFirst + 64), [](int i) PXB_INLINE_LAMBDA {
            const int byte = 64 * k + i;
            return 189 - byte / 3 * 3 + byte % 3 - kFirst;
        });
    }
    struct InOrder {
        static constexpr PXB_INLINE int At(int i) { return i; }
    };
    // Channels whose bytes stand in another order, as packing leaves them: byte i is in place
    // Order::At(i). A permutation puts each into its place in one of three outputs; blends gather them.
    template <class Order>
    static PXB_INLINE void StoreChannels(Byte* dst, __m512i b, __m512i g, __m512i r) {
        const __m512i bs = Place<0, Order>(b), gs = Place<1, Order>(g), rs = Place<2, Order>(r);
        StoreAll(dst, InTurn(bs, gs, rs));
        StoreAll(dst + 64, InTurn(gs, rs, bs));
        StoreAll(dst + 128, InTurn(rs, bs, gs));
    }
    // Byte i of x, y or z, in turn.
    static PXB_INLINE __m512i InTurn(__m512i x, __m512i y, __m512i z) {
        const __mmask64 ys = Mask([](int i) PXB_INLINE_LAMBDA { return i % 3 == 1; });
        const __mmask64 zs = Mask([](int i) PXB_INLINE_LAMBDA { return i % 3 == 2; });
        return _mm512_mask_blend_epi8(zs, _mm512_mask_blend_epi8(ys, x, y), z);
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
    template <int kChannel, class Order>
    static PXB_INLINE __m512i Place(__m512i a) {
        return _mm512_permutexvar_epi8(Indices([](int i) PXB_INLINE_LAMBDA {
                                           while (i % 3 != kChannel) i += 64;
                                           return Order::At(i / 3);
                                       }),
                                       a);
    }
};

}  // namespace pxb::PXB_TARGET
