// SSE2: one block.
#pragma once
#include "core/simd/sse2.h"

namespace pxb::PXB_TARGET {

struct Sse2Turns : Sse2Register {
    static constexpr int kBlocks = 1, kPixels = 4, kLoose = 2;

    static PXB_INLINE Register LoadBlocks(const Byte* src, std::ptrdiff_t) { return LoadAll(src); }
    template <bool kEarly>
    static PXB_INLINE Register LoadBgrBlocks(const Byte* src, std::ptrdiff_t) {
        return Spread(kEarly ? ShiftDown<4>(LoadAll(src - 4)) : LoadAll(src));
    }
    template <bool kLoosely = false>
    static PXB_INLINE void StoreBgr(Byte* dst, Register a) {
        const Register squeezed = Squeeze(a);
        if (kLoosely) return StoreAll(dst, squeezed);
        _mm_storel_epi64(reinterpret_cast<Register*>(dst), squeezed);
        const int last = _mm_cvtsi128_si32(_mm_srli_si128(squeezed, 8));
        __builtin_memcpy(dst + 8, &last, sizeof last);
    }
    template <bool kHigh>
    static PXB_INLINE Register Zip8(Register a, Register b) {
        return kHigh ? _mm_unpackhi_epi8(a, b) : _mm_unpacklo_epi8(a, b);
    }
    template <bool kHigh>
    static PXB_INLINE Register Zip32(Register a, Register b) {
        return kHigh ? _mm_unpackhi_epi32(a, b) : _mm_unpacklo_epi32(a, b);
    }
    static PXB_INLINE Register Reversed(Register a) {
        constexpr int kWords = _MM_SHUFFLE(0, 1, 2, 3);
        const Register pairs = _mm_or_si128(_mm_srli_epi16(a, 8), _mm_slli_epi16(a, 8));
        const Register halves = _mm_shufflehi_epi16(_mm_shufflelo_epi16(pairs, kWords), kWords);
        return _mm_shuffle_epi32(halves, _MM_SHUFFLE(1, 0, 3, 2));
    }

    static PXB_INLINE Register ReversedLanes(Register a) {
        return _mm_shuffle_epi32(a, _MM_SHUFFLE(0, 1, 2, 3));
    }
    static PXB_INLINE Register JustBelow(Register a, Register b) {
        return _mm_sub_epi8(b, _mm_min_epu8(_mm_subs_epu8(b, a), _mm_set1_epi8(1)));
    }

    static PXB_INLINE Register Point(std::int32_t u, std::int32_t v) {
        return _mm_set_epi32(v, u, v, u);
    }
    static PXB_INLINE Register Add32(Register a, Register b) { return _mm_add_epi32(a, b); }
    static PXB_INLINE Register MulHigh16(Register a, Register b) { return _mm_mulhi_epi16(a, b); }
    static PXB_INLINE Register Offsets(Register a, Register b, Register scale) {
        return _mm_madd_epi16(_mm_packs_epi32(_mm_srai_epi32(a, 16), _mm_srai_epi32(b, 16)), scale);
    }
    static PXB_INLINE Register LoadPairs(const Byte* src, const std::int32_t* offsets) {
        return _mm_unpacklo_epi64(LoadHalf(src + offsets[0]), LoadHalf(src + offsets[1]));
    }
    struct Tap {
        Register first, twice_difference;
    };
    template <int kBytes>
    static PXB_INLINE Tap Taps(Register pairs) {
        const auto pixels = [](Register a) PXB_INLINE_LAMBDA {
            return ZipLow8(_mm_shuffle_epi32(a, _MM_SHUFFLE(2, 0, 2, 0)), Zero());
        };
        const Register first = pixels(pairs), second = pixels(_mm_srli_epi64(pairs, 8 * kBytes));
        const Register difference = Sub16(second, first);
        return {first, Add16(difference, difference)};
    }
    template <int kWord>
    static PXB_INLINE Register Weights(Register a) {
        constexpr int kOrder = _MM_SHUFFLE(kWord, kWord, kWord, kWord);
        return _mm_shufflehi_epi16(_mm_shufflelo_epi16(a, kOrder), kOrder);
    }
    static PXB_INLINE void StoreBgrx(Byte* dst, Register a) { StoreAll(dst, a); }
};

}  // namespace pxb::PXB_TARGET
