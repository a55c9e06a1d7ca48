// Shrinking two or four times, where every block of destination bytes takes the same places of the
// source: bytes go from registers of the source into their places by constant shuffles. Bilinear
// weights are all one half, so that blending is averaging, and both passes are one.
#pragma once
#include "scale/simd/windows.h"

namespace pxb::PXB_TARGET {

#if !defined(PXB_TARGET_SSE2)

// Byte j of a destination row takes bytes first[j % group_bytes] and second[...] of a source group
// of `times` times that size.
struct EvenLayout {
    int times;  // 2 or 4; 0: there is no such layout
    int group_bytes;
    int first[4], second[4];

    PXB_INLINE int PlaceOf(const int (&of_group)[4], int byte) const {
        return byte / group_bytes * group_bytes * times + of_group[byte % group_bytes];
    }
};

// Whether the points of a table lie `times` samples apart, with these weights.
PXB_INLINE bool IsEven(const SourcePoint* points, std::ptrdiff_t count, int times, int weight) {
    for (std::ptrdiff_t i = 0; i < count; ++i)
        if (points[i].first != points[0].first + i * times || points[i].weight[1] != weight)
            return false;
    return true;
}

PXB_INLINE EvenLayout EvenLayoutOf(const ScaleJob& job, int weight) {
    EvenLayout even = {0, job.layout.group_bytes, {}, {}};
    const std::ptrdiff_t groups = job.dst_row_bytes / even.group_bytes;
    int times = 2;
    if (job.src_row_bytes == 4 * job.dst_row_bytes)
        times = 4;
    else if (job.src_row_bytes != 2 * job.dst_row_bytes)
        return even;
    if (job.dst_row_bytes < Blocks::kBytes || 16 % (even.group_bytes * times) != 0) return even;
    for (int k = 0; k < even.group_bytes; ++k) {
        const ByteOfGroup& byte = job.layout.bytes[k];
        const SourcePoint* const points = job.columns[byte.table];
        if (byte.unit == 0 || !IsEven(points, groups * byte.each, times, weight)) return even;
        even.first[k] = points[byte.nth].first * byte.unit + byte.channel;
        even.second[k] = even.first[k] + byte.unit;
    }
    even.times = times;
    return even;
}

PXB_INLINE bool AllRowsWeigh(const ScaleJob& job, int weight) {
    for (std::int32_t y = 0; y < job.dst_height; ++y)
        if (job.rows[y].weight[1] != weight) return false;
    return true;
}

#if defined(PXB_TARGET_AVX2)

// What shuffles put first and second: of each 16 bytes of source, both into one register.
struct EvenControls {
    Byte bytes[16];

    explicit PXB_INLINE EvenControls(const EvenLayout& layout) : bytes() {
        const int outputs = layout.times ? 16 / layout.times : 0;
        for (int i = 0; outputs && i < 16; ++i)
            bytes[i] = static_cast<Byte>(
                layout.PlaceOf(i < outputs ? layout.first : layout.second, i % outputs));
    }
};

template <int kTimes>
class Even : public Blocks {
  public:
    explicit PXB_INLINE Even(const EvenControls& controls)
        : order_(_mm256_broadcastsi128_si256(XmmRegister::Load(controls.bytes))) {}

    PXB_INLINE Register First(const Register (&from)[kTimes]) const {
        return InOrder(Low(Sorted(from)));
    }
    PXB_INLINE Register Mean(const Register (&from)[kTimes]) const {
        const Halves sorted = Sorted(from);
        return InOrder(Average(Low(sorted), High(sorted)));
    }

  private:
    struct Halves {
        Register a, b;
    };
    // The first bytes in the lower halves, the second ones in the upper halves.
    PXB_INLINE Halves Sorted(const Register (&from)[kTimes]) const {
        const auto part = [&](int i)
                              PXB_INLINE_LAMBDA { return _mm256_shuffle_epi8(from[i], order_); };
        if (kTimes == 2) return {part(0), part(1)};
        return {_mm256_unpacklo_epi32(part(0), part(1)),
                _mm256_unpacklo_epi32(part(kTimes - 2), part(kTimes - 1))};
    }
    static PXB_INLINE Register Low(const Halves& x) { return _mm256_unpacklo_epi64(x.a, x.b); }
    static PXB_INLINE Register High(const Halves& x) { return _mm256_unpackhi_epi64(x.a, x.b); }
    static PXB_INLINE Register InOrder(Register a) {
        using V = Avx2<Stores::kCached>;
        return kTimes == 2 ? V::Alternate(a) : V::Gather(a);
    }

    const Register order_;
};

#elif defined(PXB_TARGET_AVX512)

// What permutations of two registers of source put first, and second.
struct EvenControls {
    Byte first[Blocks::kBytes], second[Blocks::kBytes];

    explicit PXB_INLINE EvenControls(const EvenLayout& layout) : first(), second() {
        for (int i = 0; layout.times && i < Blocks::kBytes; ++i) {
            first[i] = static_cast<Byte>(layout.PlaceOf(layout.first, i) % 128);
            second[i] = static_cast<Byte>(layout.PlaceOf(layout.second, i) % 128);
        }
    }
};

template <int kTimes>
class Even : public Blocks {
  public:
    explicit PXB_INLINE Even(const EvenControls& controls)
        : first_(Load(controls.first)), second_(Load(controls.second)) {}

    PXB_INLINE Register First(const Register (&from)[kTimes]) const { return Taken(from, first_); }
    PXB_INLINE Register Mean(const Register (&from)[kTimes]) const {
        return Average(Taken(from, first_), Taken(from, second_));
    }

  private:
    static PXB_INLINE Register Taken(const Register (&from)[kTimes], Register order) {
        const Register low = _mm512_permutex2var_epi8(from[0], order, from[1]);
        if (kTimes == 2) return low;
        const Register high = _mm512_permutex2var_epi8(from[kTimes - 2], order, from[kTimes - 1]);
        return _mm512_inserti64x4(low, _mm512_castsi512_si256(high), 1);
    }

    const Register first_, second_;
};

#endif

// These ask for the rows that come next: the processor does not foresee that rows are left out. 15
// to 20 % of a call for 8-bit images, but a loss where four rows of 32-bit pixels are averaged (AMD
// EPYC, Zen 3).
template <int kTimes>
PXB_INLINE void CopyEven(Byte* to, const Byte* row, const EvenControls& controls,
                         std::ptrdiff_t bytes, std::ptrdiff_t stride) {
    const Even<kTimes> even(controls);
    const std::ptrdiff_t last = bytes - Blocks::kBytes;
    for (std::ptrdiff_t block = 0; block < bytes; block += Blocks::kBytes) {
        const std::ptrdiff_t x = block < last ? block : last;
        Blocks::Register from[kTimes];
        for (int i = 0; i < kTimes; ++i) {
            const Byte* const at = row + x * kTimes + i * Blocks::kBytes;
            from[i] = Blocks::Load(at);
            if (i * Blocks::kBytes % 64 == 0) __builtin_prefetch(at + kTimes * stride);
        }
        Blocks::Store(to + x, even.First(from));
    }
}

// Averages round up: of complements, so that theirs round down.
template <int kTimes>
PXB_INLINE void AverageEven(Byte* to, const Byte* a, const Byte* b, const EvenControls& controls,
                            std::ptrdiff_t bytes, std::ptrdiff_t stride) {
    const Even<kTimes> even(controls);
    const auto ones = Blocks::Set8(0xFF);
    const auto complement = [=](const Byte* at)
                                PXB_INLINE_LAMBDA { return Blocks::Xor(Blocks::Load(at), ones); };
    const std::ptrdiff_t last = bytes - Blocks::kBytes;
    for (std::ptrdiff_t block = 0; block < bytes; block += Blocks::kBytes) {
        const std::ptrdiff_t x = block < last ? block : last;
        Blocks::Register from[kTimes];
        for (int i = 0; i < kTimes; ++i) {
            const std::ptrdiff_t at = x * kTimes + i * Blocks::kBytes;
            from[i] = Blocks::Average(complement(a + at), complement(b + at));
            if (kTimes > 2 || i * Blocks::kBytes % 64 != 0) continue;
            __builtin_prefetch(a + at + kTimes * stride);
            __builtin_prefetch(b + at + kTimes * stride);
        }
        Blocks::Store(to + x, Blocks::Xor(even.Mean(from), ones));
    }
}

#endif

}  // namespace pxb::PXB_TARGET
