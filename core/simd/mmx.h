// MMX: 8 pixels, 64-bit registers.
#pragma once
#include <mmintrin.h>

#include "core/simd/block.h"

namespace pxb::PXB_TARGET {

struct MmxRegister {
    using Register = __m64;

    static PXB_INLINE Register Zero() { return _mm_setzero_si64(); }
    static PXB_INLINE Register Set16(int a) { return _mm_set1_pi16(static_cast<short>(a)); }
    static PXB_INLINE Register Set32(int a) { return _mm_set1_pi32(a); }
    static PXB_INLINE Register SetBgr0(int b, int g, int r) {  // words
        return _mm_set_pi16(0, static_cast<short>(r), static_cast<short>(g), static_cast<short>(b));
    }
    static PXB_INLINE void Hide(Register&) {}

    static PXB_INLINE Register LoadAll(const Byte* src) {
        Register a;
        __builtin_memcpy(&a, src, sizeof a);
        return a;
    }
    static PXB_INLINE Register LoadHalf(const Byte* src) {
        int a;
        __builtin_memcpy(&a, src, sizeof a);
        return _mm_cvtsi32_si64(a);
    }
    static PXB_INLINE void StoreAll(Byte* dst, Register a) { __builtin_memcpy(dst, &a, sizeof a); }
    static PXB_INLINE void StoreHalves(Byte* low, Byte* high, Register a) {
        const int halves[] = {_mm_cvtsi64_si32(a), _mm_cvtsi64_si32(_mm_srli_si64(a, 32))};
        __builtin_memcpy(low, &halves[0], sizeof halves[0]);
        __builtin_memcpy(high, &halves[1], sizeof halves[1]);
    }

    static PXB_INLINE Register And(Register a, Register b) { return _mm_and_si64(a, b); }
    static PXB_INLINE Register Or(Register a, Register b) { return _mm_or_si64(a, b); }
    static PXB_INLINE Register Xor(Register a, Register b) { return _mm_xor_si64(a, b); }
    static PXB_INLINE Register LowBytes(Register a) { return And(a, Set16(0xFF)); }
    static PXB_INLINE Register Add8(Register a, Register b) { return _mm_add_pi8(a, b); }
    static PXB_INLINE Register Add16(Register a, Register b) { return _mm_add_pi16(a, b); }
    static PXB_INLINE Register Sub16(Register a, Register b) { return _mm_sub_pi16(a, b); }
    static PXB_INLINE Register AddSaturated16(Register a, Register b) {
        return _mm_adds_pi16(a, b);
    }
    static PXB_INLINE Register Mul16(Register a, Register b) { return _mm_mullo_pi16(a, b); }
    static PXB_INLINE Register MultiplyAdd(Register a, Register b) { return _mm_madd_pi16(a, b); }
    static PXB_INLINE Register Average(Register a, Register b) {
        const Register half = And(_mm_srli_si64(Xor(a, b), 1), _mm_set1_pi8(0x7F));
        return _mm_sub_pi8(Or(a, b), half);
    }
    // Of 32-bit lanes: those of a, then those of b.
    static PXB_INLINE Register AddNeighbours(Register a, Register b) {
        return _mm_add_pi32(_mm_unpacklo_pi32(a, b), _mm_unpackhi_pi32(a, b));
    }
    // Of each two pixels, as words B G R X.
    static PXB_INLINE Register SumPairs(Register pixels) {
        return Add16(ZipLow8(pixels, Zero()), ZipHigh8(pixels, Zero()));
    }

    template <int kBits>
    static PXB_INLINE Register ShiftLeft16(Register a) {
        return _mm_slli_pi16(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRight16(Register a) {
        return _mm_srli_pi16(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRightSigned16(Register a) {
        return _mm_srai_pi16(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftLeft32(Register a) {
        return _mm_slli_pi32(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRight32(Register a) {
        return _mm_srli_pi32(a, kBits);
    }
    template <int kBits>
    static PXB_INLINE Register ShiftRightSigned32(Register a) {
        return _mm_srai_pi32(a, kBits);
    }
    template <int kBytes>
    static PXB_INLINE Register ShiftDown(Register a) {
        return _mm_srli_si64(a, 8 * kBytes);
    }
    template <int kBytes>
    static PXB_INLINE Register ShiftUp(Register a) {
        return _mm_slli_si64(a, 8 * kBytes);
    }

    static PXB_INLINE Register PackBytes(Register a, Register b) { return _mm_packs_pu16(a, b); }
    static PXB_INLINE Register PackWords(Register a, Register b) { return _mm_packs_pi32(a, b); }
    static PXB_INLINE Register ZipLow8(Register a, Register b) { return _mm_unpacklo_pi8(a, b); }
    static PXB_INLINE Register ZipHigh8(Register a, Register b) { return _mm_unpackhi_pi8(a, b); }
    static PXB_INLINE Register ZipLow16(Register a, Register b) { return _mm_unpacklo_pi16(a, b); }
    static PXB_INLINE Register ZipHigh16(Register a, Register b) { return _mm_unpackhi_pi16(a, b); }
    // Each even (odd) word in its own place and in that of its neighbour.
    static PXB_INLINE Register EvensTwice16(Register a) {
        return Or(And(a, Set32(0xFFFF)), ShiftLeft32<16>(a));
    }
    static PXB_INLINE Register OddsTwice16(Register a) {
        return Or(ShiftRight32<16>(a), And(a, Set32(~0xFFFF)));
    }
    static PXB_INLINE Register ReverseLanes(Register a) {  // of 32 bits
        return Or(_mm_srli_si64(a, 32), _mm_slli_si64(a, 32));
    }
    // 6 bytes to 2 lanes, and back.
    static PXB_INLINE Register Spread(Register a) {
        return Or(And(a, FirstPixel()), And(_mm_slli_si64(a, 8), _mm_slli_si64(FirstPixel(), 32)));
    }
    static PXB_INLINE Register Squeeze(Register a) {
        return Or(And(a, FirstPixel()), And(_mm_srli_si64(a, 8), _mm_slli_si64(FirstPixel(), 24)));
    }
    static PXB_INLINE void Leave() { _mm_empty(); }

  private:
    static PXB_INLINE Register FirstPixel() { return _mm_set_pi32(0, 0xFFFFFF); }
};

using Mmx = Block<MmxRegister>;

}  // namespace pxb::PXB_TARGET
