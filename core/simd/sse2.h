// SSE2: 16 pixels, 128-bit registers.
#pragma once
#include <emmintrin.h>

#include "core/simd/block.h"

namespace pxb::PXB_TARGET {

struct Sse2Register {
    using Register = __m128i;

    static PXB_INLINE Register Zero() { return _mm_setzero_si128(); }
    static PXB_INLINE Register Set16(int a) { return _mm_set1_epi16(static_cast<short>(a)); }
    static PXB_INLINE Register Set32(int a) { return _mm_set1_epi32(a); }
    static PXB_INLINE Register SetBgr0(int b, int g, int r) {  // words, for two pixels
        const auto word = [](int a) PXB_INLINE_LAMBDA { return static_cast<short>(a); };
        return _mm_set_epi16(0, word(r), word(g), word(b), 0, word(r), word(g), word(b));
    }
    // From the optimiser, which would turn products by a constant into shifts and adds.
    static PXB_INLINE void Hide(Register& a) { __asm__("" : "+x"(a)); }

    static PXB_INLINE Register LoadAll(const Byte* src) {
        return _mm_loadu_si128(reinterpret_cast<const Register*>(src));
    }
    static PXB_INLINE Register LoadHalf(const Byte* src) {
        return _mm_loadl_epi64(reinterpret_cast<const Register*>(src));
    }
    static PXB_INLINE void StoreAll(Byte* dst, Register a) {
        _mm_storeu_si128(reinterpret_cast<Register*>(dst), a);
    }
    static PXB_INLINE void StoreHalves(Byte* low, Byte* high, Register a) {
        _mm_storel_epi64(reinterpret_cast<Register*>(low), a);
        _mm_storel_epi64(reinterpret_cast<Register*>(high), _mm_srli_si128(a, 8));
    }

    static PXB_INLINE Register And(Register a, Register b) { return _mm_and_si128(a, b); }
    static PXB_INLINE Register Or(Register a, Register b) { return _mm_or_si128(a, b); }
    static PXB_INLINE Register Xor(Register a, Register b) { return _mm_xor_si128(a, b); }
    static PXB_INLINE Register LowBytes(Register a) { return And(a, Set16(0xFF)); }
    static PXB_INLINE Register Add8(Register a, Register b) { return _mm_add_epi8(a, b); }
    static PXB_INLINE Register Add16(Register a, Register b) { return _mm_add_epi16(a, b); }
    static PXB_INLINE Register Sub16(Register a, Register b) { return _mm_sub_epi16(a, b); }
    static PXB_INLINE Register AddSaturated16(Register a, Register b) {
        return _mm_adds_epi16(a, b);
    }
    static PXB_INLINE Register Mul16(Register a, Register b) { return _mm_mullo_epi16(a, b); }
    static PXB_INLINE Register MultiplyAdd(Register a, Register b) { return _mm_madd_epi16(a, b); }
    static PXB_INLINE Register Average(Register a, Register b) { return _mm_avg_epu8(a, b); }
    // Of 32-bit lanes: those of a, then those of b.
    static PXB_INLINE Register AddNeighbours(Register a, Register b) {
        const __m128 first = _mm_castsi128_ps(a), second = _mm_castsi128_ps(b);
        return _mm_add_epi32(
            _mm_castps_si128(_mm_shuffle_ps(first, second, _MM_SHUFFLE(2, 0, 2, 0))),
            _mm_castps_si128(_mm_shuffle_ps(first, second, _MM_SHUFFLE(3, 1, 3, 1))));
    }
    // Of each two pixels, as words B G R X.
    static PXB_INLINE Register SumPairs(Register pixels) {
        const Register low = ZipLow8(pixels, Zero()), high = ZipHigh8(pixels, Zero());
        return Add16(_mm_unpacklo_epi64(low, high), _mm_unpackhi_epi64(low, high));
    }

    template <int kBits>
    static PXB_INLINE Register ShiftLeft16(Register a) {
        return _mm_slli_epi16(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRight16(Register a) {
        return _mm_srli_epi16(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRightSigned16(Register a) {
        return _mm_srai_epi16(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftLeft32(Register a) {
        return _mm_slli_epi32(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRight32(Register a) {
        return _mm_srli_epi32(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRightSigned32(Register a) {
        return _mm_srai_epi32(a, kBits);
    }
    template <int kBytes>
    static PXB_INLINE Register ShiftDown(Register a) {
        return _mm_srli_si128(a, kBytes);
    }
    template <int kBytes>
    static PXB_INLINE Register ShiftUp(Register a) {
        return _mm_slli_si128(a, kBytes);
    }

    static PXB_INLINE Register PackBytes(Register a, Register b) { return _mm_packus_epi16(a, b); }
    static PXB_INLINE Register PackWords(Register a, Register b) { return _mm_packs_epi32(a, b); }
    static PXB_INLINE Register ZipLow8(Register a, Register b) { return _mm_unpacklo_epi8(a, b); }
    static PXB_INLINE Register ZipHigh8(Register a, Register b) { return _mm_unpackhi_epi8(a, b); }
    static PXB_INLINE Register ZipLow16(Register a, Register b) { return _mm_unpacklo_epi16(a, b); }
    static PXB_INLINE Register ZipHigh16(Register a, Register b) {
        return _mm_unpackhi_epi16(a, b);
    }
    // Each even (odd) word in its own place and in that of its neighbour.
    static PXB_INLINE Register EvensTwice16(Register a) {
        return PermuteWords<_MM_SHUFFLE(2, 2, 0, 0)>(a);
    }
    static PXB_INLINE Register OddsTwice16(Register a) {
        return PermuteWords<_MM_SHUFFLE(3, 3, 1, 1)>(a);
    }
    static PXB_INLINE Register ReverseLanes(Register a) {  // of 32 bits
        return _mm_shuffle_epi32(a, _MM_SHUFFLE(0, 1, 2, 3));
    }
    // 12 bytes to 4 lanes, and back. In each half two pixels of 3 bytes move apart or together.
    static PXB_INLINE Register Spread(Register a) {
        const Register halves = _mm_unpacklo_epi64(a, _mm_srli_si128(a, 6));
        return Or(And(halves, FirstPixels()),
                  And(_mm_slli_epi64(halves, 8), _mm_slli_epi64(FirstPixels(), 32)));
    }
    static PXB_INLINE Register Squeeze(Register a) {
        const Register halves =
            Or(And(a, FirstPixels()), And(_mm_srli_epi64(a, 8), _mm_slli_epi64(FirstPixels(), 24)));
        return Or(_mm_move_epi64(halves), _mm_slli_si128(_mm_srli_si128(halves, 8), 6));
    }
    static PXB_INLINE void Leave() {}

  private:
    template <int kOrder>
    static PXB_INLINE Register PermuteWords(Register a) {
        return _mm_shufflehi_epi16(_mm_shufflelo_epi16(a, kOrder), kOrder);
    }
    static PXB_INLINE Register FirstPixels() { return _mm_set_epi32(0, 0xFFFFFF, 0, 0xFFFFFF); }
};

using Sse2 = Block<Sse2Register>;

}  // namespace pxb::PXB_TARGET
