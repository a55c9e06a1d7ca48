// AVX2: two blocks.
#pragma once
#include "core/simd/avx2.h"
#include "transform/simd/sse2.h"

namespace pxb::PXB_TARGET {

struct Avx2Turns : Avx2<Stores::kCached> {
    static constexpr int kBlocks = 2, kPixels = 8, kLoose = 3;

    static PXB_INLINE Register LoadBlocks(const Byte* src, std::ptrdiff_t step) {
        return _mm256_inserti128_si256(_mm256_castsi128_si256(LoadBlock(src)),
                                       LoadBlock(src + step), 1);
    }
    template <bool kEarly>
    static PXB_INLINE Register LoadBgrBlocks(const Byte* src, std::ptrdiff_t step) {
        constexpr int kSkipped = kEarly ? 4 : 0;
        return _mm256_shuffle_epi8(LoadBlocks(src - kSkipped, step),
                                   TwiceInBlocks([](int i) PXB_INLINE_LAMBDA {
                                       return i % 4 < 3 ? i / 4 * 3 + i % 4 + kSkipped : -1;
                                   }));
    }
    template <bool kLoosely = false>
    static PXB_INLINE void StoreBgr(Byte* dst, Register a) {
        const Register squeezed = _mm256_shuffle_epi8(a, TwiceInBlocks([](int i) PXB_INLINE_LAMBDA {
                                                          return i < 12 ? i / 3 * 4 + i % 3 : -1;
                                                      }));
        const Register joined =
            _mm256_permutevar8x32_epi32(squeezed, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 3));
        if (kLoosely) return StoreAll(dst, joined);
        StoreBlock(dst, _mm256_castsi256_si128(joined));
        // Of the form for integers GCC 12 makes an instruction beyond our AVX-512.
        _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + 16), _mm256_extractf128_si256(joined, 1));
    }
    template <bool kHigh>
    static PXB_INLINE Register Zip8(Register a, Register b) {
        return kHigh ? _mm256_unpackhi_epi8(a, b) : _mm256_unpacklo_epi8(a, b);
    }
    template <bool kHigh>
    static PXB_INLINE Register Zip32(Register a, Register b) {
        return kHigh ? _mm256_unpackhi_epi32(a, b) : _mm256_unpacklo_epi32(a, b);
    }
    static PXB_INLINE Register Reversed(Register a) {
        const Register blocks =
            _mm256_shuffle_epi8(a, TwiceInBlocks([](int i) PXB_INLINE_LAMBDA { return 15 - i; }));
        return _mm256_permute2x128_si256(blocks, blocks, 1);
    }

    static PXB_INLINE Register ReversedLanes(Register a) {
        return _mm256_permutevar8x32_epi32(a, _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0));
    }
    static PXB_INLINE Register JustBelow(Register a, Register b) {
        return _mm256_sub_epi8(b, _mm256_min_epu8(_mm256_subs_epu8(b, a), _mm256_set1_epi8(1)));
    }

    static PXB_INLINE Register Point(std::int32_t u, std::int32_t v) {
        return _mm256_set_epi32(v, u, v, u, v, u, v, u);
    }
    static PXB_INLINE Register Set32(int a) { return _mm256_set1_epi32(a); }
    static PXB_INLINE Register Add32(Register a, Register b) { return _mm256_add_epi32(a, b); }
    template <int kBits>
    static PXB_INLINE Register ShiftRight32(Register a) {
        return _mm256_srli_epi32(a, kBits);
    }
    static PXB_INLINE Register MulHigh16(Register a, Register b) {
        return _mm256_mulhi_epi16(a, b);
    }
    static PXB_INLINE Register Offsets(Register a, Register b, Register scale) {
        return _mm256_madd_epi16(
            _mm256_packs_epi32(_mm256_srai_epi32(a, 16), _mm256_srai_epi32(b, 16)), scale);
    }
    static PXB_INLINE Register LoadPairs(const Byte* src, const std::int32_t* offsets) {
        return _mm256_inserti128_si256(_mm256_castsi128_si256(Sse2Turns::LoadPairs(src, offsets)),
                                       Sse2Turns::LoadPairs(src, offsets + 4), 1);
    }
    struct Tap {
        Register first, twice_difference;
    };
    template <int kBytes>
    static PXB_INLINE Tap Taps(Register pairs) {
        const Register in_turn =
            _mm256_shuffle_epi8(pairs, TwiceInBlocks([](int i) PXB_INLINE_LAMBDA {
                                    return i / 8 * 8 + i % 8 / 2 + i % 2 * kBytes;
                                }));
        return {LowBytes(in_turn), MultiplyAddBytes(in_turn, Set16(0x02FE))};
    }
    template <int kWord>
    static PXB_INLINE Register Weights(Register a) {
        return _mm256_shuffle_epi8(a, TwiceInBlocks([](int i) PXB_INLINE_LAMBDA {
                                       return i / 8 * 8 + 2 * kWord + i % 2;
                                   }));
    }
    static PXB_INLINE void StoreBgrx(Byte* dst, Register a) { StoreAll(dst, a); }
};

}  // namespace pxb::PXB_TARGET
