// AVX-512: four blocks.
#pragma once
#include "core/simd/avx512.h"
#include "transform/simd/avx2.h"

namespace pxb::PXB_TARGET {

struct Avx512Turns : Avx512<Stores::kCached> {
    static constexpr int kBlocks = 4, kPixels = 16, kLoose = 6;

    static PXB_INLINE Register LoadBlocks(const Byte* src, std::ptrdiff_t step) {
        return Join(Avx2Turns::LoadBlocks(src, step), Avx2Turns::LoadBlocks(src + 2 * step, step));
    }
    template <bool kEarly>
    static PXB_INLINE Register LoadBgrBlocks(const Byte* src, std::ptrdiff_t step) {
        constexpr int kSkipped = kEarly ? 4 : 0;
        return ShuffleBlocks(LoadBlocks(src - kSkipped, step), [](int i) PXB_INLINE_LAMBDA {
            return i % 4 < 3 ? i / 4 * 3 + i % 4 + kSkipped : -1;
        });
    }
    template <bool kLoosely = false>
    static PXB_INLINE void StoreBgr(Byte* dst, Register a) {
        const Register squeezed = _mm512_permutexvar_epi8(
            Indices([](int i) PXB_INLINE_LAMBDA { return i / 3 * 4 + i % 3; }), a);
        if (kLoosely) return StoreAll(dst, squeezed);
        StoreHalf(dst, _mm512_castsi512_si256(squeezed));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 32),
                         _mm256_castsi256_si128(_mm512_extracti64x4_epi64(squeezed, 1)));
    }
    template <bool kHigh>
    static PXB_INLINE Register Zip8(Register a, Register b) {
        return kHigh ? _mm512_unpackhi_epi8(a, b) : _mm512_unpacklo_epi8(a, b);
    }
    template <bool kHigh>
    static PXB_INLINE Register Zip32(Register a, Register b) {
        return kHigh ? _mm512_unpackhi_epi32(a, b) : _mm512_unpacklo_epi32(a, b);
    }
    static PXB_INLINE Register Reversed(Register a) {
        return _mm512_permutexvar_epi8(Indices([](int i) PXB_INLINE_LAMBDA { return 63 - i; }), a);
    }

    static PXB_INLINE Register ReversedLanes(Register a) {
        return _mm512_permutexvar_epi32(
            _mm512_setr_epi32(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0), a);
    }
    static PXB_INLINE Register JustBelow(Register a, Register b) {
        return _mm512_sub_epi8(b, _mm512_min_epu8(_mm512_subs_epu8(b, a), _mm512_set1_epi8(1)));
    }

    static PXB_INLINE Register Point(std::int32_t u, std::int32_t v) {
        return Join(Avx2Turns::Point(u, v), Avx2Turns::Point(u, v));
    }
    static PXB_INLINE Register Set32(int a) { return _mm512_set1_epi32(a); }
    static PXB_INLINE Register Add32(Register a, Register b) { return _mm512_add_epi32(a, b); }
    template <int kBits>
    static PXB_INLINE Register ShiftRight32(Register a) {
        return _mm512_srli_epi32(a, kBits);
    }
    static PXB_INLINE Register MulHigh16(Register a, Register b) {
        return _mm512_mulhi_epi16(a, b);
    }
    static PXB_INLINE Register Offsets(Register a, Register b, Register scale) {
        return _mm512_madd_epi16(
            _mm512_packs_epi32(_mm512_srai_epi32(a, 16), _mm512_srai_epi32(b, 16)), scale);
    }
    static PXB_INLINE Register LoadPairs(const Byte* src, const std::int32_t* offsets) {
        return Join(Avx2Turns::LoadPairs(src, offsets), Avx2Turns::LoadPairs(src, offsets + 8));
    }
    struct Tap {
        Register first, twice_difference;
    };
    template <int kBytes>
    static PXB_INLINE Tap Taps(Register pairs) {
        const Register in_turn = ShuffleBlocks(
            pairs, [](int i) PXB_INLINE_LAMBDA { return i / 8 * 8 + i % 8 / 2 + i % 2 * kBytes; });
        return {LowBytes(in_turn), MultiplyAddBytes(in_turn, Set16(0x02FE))};
    }
    template <int kWord>
    static PXB_INLINE Register Weights(Register a) {
        return ShuffleBlocks(a,
                             [](int i) PXB_INLINE_LAMBDA { return i / 8 * 8 + 2 * kWord + i % 2; });
    }
    static PXB_INLINE void StoreBgrx(Byte* dst, Register a) { StoreAll(dst, a); }

  private:
    static PXB_INLINE Register Join(__m256i low, __m256i high) {
        return _mm512_inserti64x4(_mm512_castsi256_si512(low), high, 1);
    }
    template <class At>
    static PXB_INLINE Register ShuffleBlocks(Register a, At at) {
        return _mm512_shuffle_epi8(a, Indices([=](int i) PXB_INLINE_LAMBDA { return at(i % 16); }));
    }
};

}  // namespace pxb::PXB_TARGET
