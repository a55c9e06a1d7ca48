// Puts the floating-point unit into the state in which + - * / on doubles give the same bits on
// every build: 53-bit precision, round to nearest, exceptions masked, no flush to zero. Gives the
// caller's whole environment back, status flags included: with the control word alone, a caller
// that has unmasked exceptions would trap on a flag raised in here.
//
// The compiler may move arithmetic across the switch. So put it into a function marked PXB_NOINLINE
// that returns no double, and call that while a FloatGuard lives. Not for use in MMX state.
#pragma once
#include <cstdint>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

#if defined(__clang__)
#define PXB_NOINLINE __attribute__((noinline))
#else
#define PXB_NOINLINE __attribute__((noinline, noclone))
#endif

namespace pxb {

class FloatGuard {
  public:
    FloatGuard(const FloatGuard&) = delete;
    FloatGuard& operator=(const FloatGuard&) = delete;

#if defined(__SSE2__)  // doubles live in SSE registers
    FloatGuard() : saved_(_mm_getcsr()) {
        _mm_setcsr(kMaskedNearest);
    }
    ~FloatGuard() {
        _mm_setcsr(saved_);
    }

  private:
    static constexpr unsigned kMaskedNearest = 0x1F80;
    unsigned saved_;
#else  // doubles live in x87 registers
    FloatGuard() {
        const std::uint16_t masked_nearest_53_bits = 0x027F;
        __asm__ volatile("fnstenv %0\n fnclex\n fldcw %1"
                         : "=m"(saved_)
                         : "m"(masked_nearest_53_bits)
                         : "memory");
    }
    ~FloatGuard() {
        __asm__ volatile("fldenv %0" : : "m"(saved_) : "memory");
    }

  private:
    struct Environment {
        std::uint32_t words[7];
    } saved_;
#endif
};

}  // namespace pxb
