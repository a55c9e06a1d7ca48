// Puts the floating-point unit into the state in which + - * / on doubles give the same bits on
// every build: 53-bit precision, round to nearest, exceptions masked, no flush to zero. Gives the
// caller's whole environment back, status flags included: with the control word alone, a caller
// that has unmasked exceptions would trap on a flag raised in here.
//
// The compiler may move arithmetic across the switch. So put it into a function marked PXB_NOINLINE
// that returns no double, and call that while a FloatGuard lives. Not for use in MMX state.
#pragma once
#include <cstdint>

#include "core/byte.h"

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

#if defined(__clang__)
#define PXB_NOINLINE __attribute__((noinline))
#else
#define PXB_NOINLINE __attribute__((noinline, noclone))
#endif

namespace pxb {

#if defined(__SSE2__)  // doubles live in SSE registers
class SseGuard {
  public:
    PXB_INLINE SseGuard() : saved_(_mm_getcsr()) { _mm_setcsr(kMaskedNearest); }
    PXB_INLINE ~SseGuard() { _mm_setcsr(saved_); }
    SseGuard(const SseGuard&) = delete;
    SseGuard& operator=(const SseGuard&) = delete;

  private:
    static constexpr unsigned kMaskedNearest = 0x1F80;
    unsigned saved_;
};
using FloatGuard = SseGuard;
#else  // doubles live in x87 registers
class X87Guard {
  public:
    PXB_INLINE X87Guard() {
        const std::uint16_t masked_nearest_53_bits = 0x027F;
        __asm__ volatile("fnstenv %0\n fnclex\n fldcw %1"
                         : "=m"(saved_)
                         : "m"(masked_nearest_53_bits)
                         : "memory");
    }
    PXB_INLINE ~X87Guard() { __asm__ volatile("fldenv %0" : : "m"(saved_) : "memory"); }
    X87Guard(const X87Guard&) = delete;
    X87Guard& operator=(const X87Guard&) = delete;

  private:
    struct Environment {
        std::uint32_t words[7];
    } saved_;
};
using FloatGuard = X87Guard;
#endif

}  // namespace pxb
