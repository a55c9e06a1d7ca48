// RowWidths: the register classes that walk along source rows, widest first, for the vertical pass.
// The row of scratch memory holds its bytes the way that horizontal passes want them: `kFlip` is
// 128 where their highest bit is inverted, so that multiply-adds of unsigned by signed bytes take
// them.
//
// Load Store          kPixels bytes
// Keep(a)             a, as the scratch row holds it
// Mean(a, b)          (a + b) / 2, rounded down
// Blend(a, b, w)      a + floor((b - a) w / 256), w from 1 to 255
// Sum(rows, weights)  of four rows, (sum + 127) / 255
#pragma once
#include "core/simd/writer.h"

#if !defined(PXB_TARGET_SSE2)
#include <immintrin.h>
#endif

namespace pxb::PXB_TARGET {

// A copy, which stores to rows cannot change: it stays in registers.
struct RowWeights {
    Byte of[4];
};

struct RowRegister {
    static constexpr bool kStreams = false;
    static PXB_INLINE void Leave() {}
};

#if defined(PXB_TARGET_SSE2)

constexpr int kFlip = 0;

struct XmmRow : RowRegister, Sse2Register {
    static constexpr int kPixels = 16;
    static PXB_INLINE Register Load(const Byte* src) { return LoadAll(src); }
    static PXB_INLINE void Store(Byte* dst, Register a) { StoreAll(dst, a); }
    static PXB_INLINE Register Keep(Register a) { return a; }
    static PXB_INLINE Register Mean(Register a, Register b) {
        const Register ones = Set32(-1);
        return Xor(Average(Xor(a, ones), Xor(b, ones)), ones);
    }
    static PXB_INLINE Register Blend(Register a, Register b, int weight) {
        const Register zero = Zero(), w = Set16(weight);
        const auto part = [&](Register from, Register to) PXB_INLINE_LAMBDA {
            return ShiftRight16<8>(Mul16(Sub16(to, from), w));
        };
        return Add8(a, PackBytes(part(ZipLow8(a, zero), ZipLow8(b, zero)),
                                 part(ZipHigh8(a, zero), ZipHigh8(b, zero))));
    }
    static PXB_INLINE Register Sum(const Register (&rows)[4], const RowWeights& weights) {
        const Register zero = Zero();
        Register low = Set16(128), high = low;
        for (int k = 0; k < 4; ++k) {
            const Register w = Set16(weights.of[k]);
            low = Add16(low, Mul16(ZipLow8(rows[k], zero), w));
            high = Add16(high, Mul16(ZipHigh8(rows[k], zero), w));
        }
        const Register by255 = Set16(257);
        return PackBytes(_mm_mulhi_epu16(low, by255), _mm_mulhi_epu16(high, by255));
    }
};

#else

constexpr int kFlip = 128;

struct XmmRegister {
    using Register = __m128i;
    static PXB_INLINE Register Load(const Byte* src) {
        return _mm_loadu_si128(reinterpret_cast<const Register*>(src));
    }
    static PXB_INLINE void Store(Byte* dst, Register a) {
        _mm_storeu_si128(reinterpret_cast<Register*>(dst), a);
    }
    static PXB_INLINE Register Set8(int a) { return _mm_set1_epi8(static_cast<char>(a)); }
    static PXB_INLINE Register Set16(int a) { return _mm_set1_epi16(static_cast<short>(a)); }
    static PXB_INLINE Register Xor(Register a, Register b) { return _mm_xor_si128(a, b); }
    static PXB_INLINE Register Add16(Register a, Register b) { return _mm_add_epi16(a, b); }
    static PXB_INLINE Register MultiplyAddBytes(Register a, Register b) {
        return _mm_maddubs_epi16(a, b);
    }
    static PXB_INLINE Register MultiplyHigh(Register a, Register b) {
        return _mm_mulhi_epu16(a, b);
    }
    static PXB_INLINE Register HighBytes(Register a) { return _mm_srli_epi16(a, 8); }
    static PXB_INLINE Register PackBytes(Register a, Register b) { return _mm_packus_epi16(a, b); }
    static PXB_INLINE Register ZipLow8(Register a, Register b) { return _mm_unpacklo_epi8(a, b); }
    static PXB_INLINE Register ZipHigh8(Register a, Register b) { return _mm_unpackhi_epi8(a, b); }
    static PXB_INLINE Register Average(Register a, Register b) { return _mm_avg_epu8(a, b); }
};

struct YmmRegister : Avx2Register {
    static PXB_INLINE Register Load(const Byte* src) {
        return _mm256_loadu_si256(reinterpret_cast<const Register*>(src));
    }
    static PXB_INLINE void Store(Byte* dst, Register a) {
        _mm256_storeu_si256(reinterpret_cast<Register*>(dst), a);
    }
    static PXB_INLINE Register Set8(int a) { return _mm256_set1_epi8(static_cast<char>(a)); }
    static PXB_INLINE Register MultiplyHigh(Register a, Register b) {
        return _mm256_mulhi_epu16(a, b);
    }
    static PXB_INLINE Register HighBytes(Register a) { return ShiftRight16<8>(a); }
    static PXB_INLINE Register Average(Register a, Register b) { return _mm256_avg_epu8(a, b); }
};

#if defined(PXB_TARGET_AVX512)
struct ZmmRegister : Avx512Register {
    static PXB_INLINE Register Load(const Byte* src) { return _mm512_loadu_si512(src); }
    static PXB_INLINE void Store(Byte* dst, Register a) { _mm512_storeu_si512(dst, a); }
    static PXB_INLINE Register Set8(int a) { return _mm512_set1_epi8(static_cast<char>(a)); }
    static PXB_INLINE Register MultiplyHigh(Register a, Register b) {
        return _mm512_mulhi_epu16(a, b);
    }
    static PXB_INLINE Register HighBytes(Register a) { return ShiftRight16<8>(a); }
    static PXB_INLINE Register Average(Register a, Register b) { return _mm512_avg_epu8(a, b); }
};
#endif

// Two weights that sum up to at most 256, for unsigned bytes in turn. Their sums of flipped bytes
// stay within 16 signed bits.
constexpr PXB_INLINE int PairOf(int first, int second) {
    return second << 8 | first;
}

template <class R>
struct FlippedRow : RowRegister, R {
    using Register = typename R::Register;
    static constexpr int kPixels = sizeof(Register);

    static PXB_INLINE Register Keep(Register a) { return R::Xor(a, R::Set8(0x80)); }
    static PXB_INLINE Register Mean(Register a, Register b) {
        const Register ones = R::Set8(0xFF);
        return R::Xor(R::Average(R::Xor(a, ones), R::Xor(b, ones)), R::Set8(0x7F));
    }
    static PXB_INLINE Register Blend(Register a, Register b, int weight) {
        const Register weights = R::Set16(PairOf(256 - weight, weight));
        const Register p = Keep(a), q = Keep(b);
        return R::PackBytes(R::HighBytes(R::MultiplyAddBytes(weights, R::ZipLow8(p, q))),
                            R::HighBytes(R::MultiplyAddBytes(weights, R::ZipHigh8(p, q))));
    }
    static PXB_INLINE Register Sum(const Register (&rows)[4], const RowWeights& weights) {
        const Register first = R::Set16(PairOf(weights.of[0], weights.of[1]));
        const Register second = R::Set16(PairOf(weights.of[2], weights.of[3]));
        const Register a = Keep(rows[0]), b = Keep(rows[1]), c = Keep(rows[2]), d = Keep(rows[3]);
        const Register low = R::Add16(R::MultiplyAddBytes(first, R::ZipLow8(a, b)),
                                      R::MultiplyAddBytes(second, R::ZipLow8(c, d)));
        const Register high = R::Add16(R::MultiplyAddBytes(first, R::ZipHigh8(a, b)),
                                       R::MultiplyAddBytes(second, R::ZipHigh8(c, d)));
        return Keep(R::PackBytes(RoundedMean(low), RoundedMean(high)));
    }
    // Of flipped bytes under weights that sum up to 255: (sum + 127) / 255. Flipping takes 255 *
    // 128 off, which is 128 short of the sign.
    static PXB_INLINE Register RoundedMean(Register sum) {
        return R::MultiplyHigh(R::Xor(sum, R::Set16(0x8000)), R::Set16(257));
    }
};

#endif

struct LastBytes : RowRegister {
    static constexpr int kPixels = 1;
    using Register = int;
    static PXB_INLINE int Load(const Byte* src) { return *src; }
    static PXB_INLINE void Store(Byte* dst, int a) { *dst = static_cast<Byte>(a); }
    static PXB_INLINE int Keep(int a) { return a ^ kFlip; }
    static PXB_INLINE int Mean(int a, int b) { return Keep((a + b) >> 1); }
    static PXB_INLINE int Blend(int a, int b, int weight) {
        return Keep(a + ((b - a) * weight >> 8));
    }
    static PXB_INLINE int Sum(const int (&rows)[4], const RowWeights& weights) {
        int sum = 128;
        for (int k = 0; k < 4; ++k) sum += weights.of[k] * rows[k];
        return Keep(sum * 257 >> 16);
    }
};

#if defined(PXB_TARGET_SSE2)
using RowWidths = WidthsOf<XmmRow, LastBytes>;
#elif defined(PXB_TARGET_AVX2)
using RowWidths = WidthsOf<FlippedRow<YmmRegister>, FlippedRow<XmmRegister>, LastBytes>;
#elif defined(PXB_TARGET_AVX512)
using RowWidths =
    WidthsOf<FlippedRow<ZmmRegister>, FlippedRow<YmmRegister>, FlippedRow<XmmRegister>, LastBytes>;
#endif

}  // namespace pxb::PXB_TARGET
