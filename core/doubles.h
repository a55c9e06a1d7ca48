// What code that computes in doubles shares. On 32 bits it is compiled twice, for the x87 unit and
// for SSE2 registers, which take a quarter of the time; on 64 bits once. It stands in the namespace
// PXB_DOUBLES, and follows the rules for files that are compiled for wide registers.
#pragma once
#include <cstdint>

#include "core/float_guard.h"
#include "core/variants.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#if defined(__i386__)
#define PXB_DECLARE_IN_DOUBLES(kernel, name) \
    namespace plain {                        \
    kernel name;                             \
    }                                        \
    namespace sse2 {                         \
    kernel name;                             \
    }
#define PXB_VARIANTS_IN_DOUBLES(name)    \
    Variants<decltype(plain::name)> {    \
        plain::name, nullptr, sse2::name \
    }
#else
#define PXB_DECLARE_IN_DOUBLES(kernel, name) \
    namespace plain {                        \
    kernel name;                             \
    }
#define PXB_VARIANTS_IN_DOUBLES(name) \
    Variants<decltype(plain::name)> { \
        plain::name                   \
    }
#endif

#if defined(__i386__) && defined(__SSE2__)
#define PXB_DOUBLES sse2
#else
#define PXB_DOUBLES plain
#endif

namespace pxb::PXB_DOUBLES {

// Toward zero; |value| < 2^51.
PXB_INLINE std::int64_t Truncate(double value) {
#if defined(__x86_64__)
    return static_cast<std::int64_t>(value);
#else
#if defined(__SSE2__)
    const std::int32_t low = _mm_cvttsd_si32(_mm_set_sd(value));
    if (low != INT32_MIN) return low;  // which stands for all that 32 bits cannot hold
#endif
    // The x87 unit would have to change its rounding for each conversion, and again after it. Next to
    // 1.5 * 2^52 doubles are whole numbers, the nearest of which stands in the lower bits.
    constexpr double kWhole = 0x1.8p52;
    const double sum = value + kWhole, nearest = sum - kWhole;
    const std::int64_t whole =
        __builtin_bit_cast(std::int64_t, sum) - __builtin_bit_cast(std::int64_t, kWhole);
    if (value >= 0) return nearest > value ? whole - 1 : whole;
    return nearest < value ? whole + 1 : whole;
#endif
}

// The same from 0 to 2^31.
PXB_INLINE std::int32_t TruncateSmall(double value) {
#if defined(__SSE2__)
    return static_cast<std::int32_t>(value);
#else
    return static_cast<std::int32_t>(Truncate(value));
#endif
}

// As std::max and std::min, which may leave copies of their own behind.
template <class T>
PXB_INLINE T Larger(T a, T b) {
    return a < b ? b : a;
}
template <class T>
PXB_INLINE T Smaller(T a, T b) {
    return b < a ? b : a;
}

}  // namespace pxb::PXB_DOUBLES
