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

PXB_INLINE int PlaceOf(const EvenLayout& even, const int (&of_group)[4], int byte) {
    return byte / even.group_bytes * even.group_bytes * even.times +
           of_group[byte % even.group_bytes];
}

#if defined(PXB_TARGET_AVX2)

template <int kTimes>
struct Even : Blocks {
    // In each 16 bytes of source, the first bytes of what they give, then the second ones.
    struct Controls {
        Register order;
    };
    static PXB_INLINE Controls ControlsOf(const EvenLayout& even) {
        Byte order[16] = {};
        for (int i = 0; i < 16 / kTimes; ++i) {
            order[i] = static_cast<Byte>(PlaceOf(even, even.first, i));
            order[16 / kTimes + i] = static_cast<Byte>(PlaceOf(even, even.second, i));
        }
        return {_mm256_broadcastsi128_si256(XmmRegister::Load(order))};
    }
    static PXB_INLINE Register First(const Register (&from)[kTimes], const Controls& controls) {
        return InOrder(Low(Sorted(from, controls)));
    }
    static PXB_INLINE Register Average(const Register (&from)[kTimes], const Controls& controls) {
        const Halves sorted = Sorted(from, controls);
        return InOrder(_mm256_avg_epu8(Low(sorted), High(sorted)));
    }

  private:
    struct Halves {
        Register a, b;
    };
    // The first bytes in the lower halves, the second ones in the upper halves.
    static PXB_INLINE Halves Sorted(const Register (&from)[kTimes], const Controls& controls) {
        const auto part = [&](int i) PXB_INLINE_LAMBDA {
            return _mm256_shuffle_epi8(from[i], controls.order);
        };
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
};

#else

template <int kTimes>
struct Even : Blocks {
    // Of each two registers: the first bytes of what they give, then the second ones.
    struct Controls {
        Register first, second;
    };
    static PXB_INLINE Controls ControlsOf(const EvenLayout& even) {
        Byte first[kBytes], second[kBytes];
        for (int i = 0; i < kBytes; ++i) {
            first[i] = static_cast<Byte>(PlaceOf(even, even.first, i) % 128);
            second[i] = static_cast<Byte>(PlaceOf(even, even.second, i) % 128);
        }
        return {Load(first), Load(second)};
    }
    static PXB_INLINE Register First(const Register (&from)[kTimes], const Controls& controls) {
        return Taken(from, controls.first);
    }
    static PXB_INLINE Register Average(const Register (&from)[kTimes], const Controls& controls) {
        return _mm512_avg_epu8(Taken(from, controls.first), Taken(from, controls.second));
    }

  private:
    static PXB_INLINE Register Taken(const Register (&from)[kTimes], Register order) {
        const Register low = _mm512_permutex2var_epi8(from[0], order, from[1]);
        if (kTimes == 2) return low;
        const Register high = _mm512_permutex2var_epi8(from[kTimes - 2], order, from[kTimes - 1]);
        return _mm512_inserti64x4(low, _mm512_castsi512_si256(high), 1);
    }
};

#endif

template <int kTimes>
PXB_INLINE void CopyEven(Byte* to, const Byte* row, const EvenLayout& layout,
                         std::ptrdiff_t bytes) {
    using E = Even<kTimes>;
    const auto controls = E::ControlsOf(layout);
    const std::ptrdiff_t last = bytes - E::kBytes;
    for (std::ptrdiff_t block = 0; block < bytes; block += E::kBytes) {
        const std::ptrdiff_t x = block < last ? block : last;
        typename E::Register from[kTimes];
        for (int i = 0; i < kTimes; ++i) from[i] = E::Load(row + x * kTimes + i * E::kBytes);
        E::Store(to + x, E::First(from, controls));
    }
}

// Averages round up: of complements, so that theirs round down.
template <int kTimes>
PXB_INLINE void AverageEven(Byte* to, const Byte* a, const Byte* b, const EvenLayout& layout,
                            std::ptrdiff_t bytes) {
    using E = Even<kTimes>;
    const auto controls = E::ControlsOf(layout);
    const auto ones = E::Set8(0xFF);
    const std::ptrdiff_t last = bytes - E::kBytes;
    for (std::ptrdiff_t block = 0; block < bytes; block += E::kBytes) {
        const std::ptrdiff_t x = block < last ? block : last;
        typename E::Register from[kTimes];
        for (int i = 0; i < kTimes; ++i) {
            const std::ptrdiff_t at = x * kTimes + i * E::kBytes;
            from[i] = Blocks::Average(E::Xor(E::Load(a + at), ones), E::Xor(E::Load(b + at), ones));
        }
        E::Store(to + x, E::Xor(E::Average(from, controls), ones));
    }
}

#endif

}  // namespace pxb::PXB_TARGET
