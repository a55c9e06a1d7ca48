// Floating-point environments that a caller may come with. Functions that compute in doubles give
// the same results in each, and leave it as it was.
#pragma once
#include <cstdint>

namespace pxb::test {

struct FloatEnvironment {
    std::uint16_t x87_control, x87_status;
    std::uint32_t mxcsr;  // 64-bit builds
    bool operator==(const FloatEnvironment&) const = default;
};

constexpr std::uint16_t kX87Flags = 0x3F;

inline FloatEnvironment FloatEnvironmentNow() {
    FloatEnvironment now = {};
    __asm__ volatile("fnstcw %0\n fnstsw %1" : "=m"(now.x87_control), "=m"(now.x87_status));
    now.x87_status &= kX87Flags;
#if defined(__x86_64__)
    __asm__ volatile("stmxcsr %0" : "=m"(now.mxcsr));
#endif
    return now;
}

inline void SwitchTo(const FloatEnvironment& to) {
    std::uint32_t words[7];
    __asm__ volatile("fnstenv %0" : "=m"(words));
    words[0] = (words[0] & ~0xFFFFu) | to.x87_control;
    words[1] = (words[1] & ~std::uint32_t{kX87Flags}) | to.x87_status;
    __asm__ volatile("fldenv %0" : : "m"(words) : "memory");
#if defined(__x86_64__)
    __asm__ volatile("ldmxcsr %0" : : "m"(to.mxcsr) : "memory");
#endif
}

// Exact arithmetic, which traps if an exception waits to be delivered.
inline void ComputeWithX87() {
    __asm__ volatile("fld1\n fld1\n faddp\n fstp %%st(0)\n fwait" : : : "st", "memory");
}

inline constexpr FloatEnvironment kFloatEnvironments[] = {
    {0x037F, 0, 0x1F80},           // 64 bits of precision
    {0x027F, 0, 0x1F80},           // 53 bits
    {0x007F, 0, 0x1F80 | 0x2000},  // 24 bits; rounding down
    {0x0F7F, 0, 0x1F80 | 0x4000},  // rounding toward zero; up
    {0x0B7F, 0, 0x1F80 | 0x6000},  // rounding up; toward zero
    {0x0340, 0, 0x0000},           // all exceptions unmasked
    {0x035F, 0, 0x0F80},           // an inexact result would trap
    {0x037F, 0x20, 0x1FA0},        // flags that stand
    {0x037F, 0x3D, 0x1FBD},        // most of them
    {0x037F, 0, 0x9FC0},           // denormals flushed to zero
};

}  // namespace pxb::test
