#include "core/studio_color.h"

#include <gtest/gtest.h>

namespace pxb::test {
namespace {

Rgb ColorOf(std::uint32_t code) {  // 0xBBGGRR
    return {static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(code >> 8),
            static_cast<std::uint8_t>(code >> 16)};
}

class Hash {  // FNV-1a
  public:
    void Add(std::uint8_t byte) { value_ = (value_ ^ byte) * 1099511628211u; }
    void Add(Yuv yuv) { Add(yuv.y), Add(yuv.u), Add(yuv.v); }
    std::uint64_t Value() const { return value_; }

  private:
    std::uint64_t value_ = 1469598103934665603u;
};

// The same on every build.
constexpr std::uint64_t kAllColors = 0xeb8dc35f99b44a14;
constexpr std::uint64_t kSomeColors = 0xb3d8fc41b7e9f9b9;

// A double lies next to the exact value, which it can leave only where that is a whole number: then
// truncation may lose one.
bool IsTruncated(int thousandths, std::uint8_t got) {
    const int whole = thousandths / 1000;
    return got == whole || (got == whole - 1 && thousandths % 1000 == 0);
}

TEST(StudioColor, AllColors) {
    Hash hash;
    for (std::uint32_t code = 0; code < 1 << 24; ++code) {
        const Rgb c = ColorOf(code);
        const Yuv yuv = StudioYuv(c);
        hash.Add(yuv);
        ASSERT_TRUE(IsTruncated(504 * c.g + 257 * c.r + 98 * c.b + 16000, yuv.y) &&
                    IsTruncated(439 * c.b - 291 * c.g - 148 * c.r + 128000, yuv.u) &&
                    IsTruncated(439 * c.r - 368 * c.g - 71 * c.b + 128000, yuv.v))
            << std::hex << code << ": " << int{yuv.y} << " " << int{yuv.u} << " " << int{yuv.v};
    }
    EXPECT_EQ(hash.Value(), kAllColors);
}

// ---- The caller's floating-point environment ----

struct Environment {
    std::uint16_t x87_control, x87_status;
    std::uint32_t mxcsr;  // 64-bit builds
    bool operator==(const Environment&) const = default;
};

constexpr std::uint16_t kFlags = 0x3F;

Environment Now() {
    Environment now = {};
    __asm__ volatile("fnstcw %0\n fnstsw %1" : "=m"(now.x87_control), "=m"(now.x87_status));
    now.x87_status &= kFlags;
#if defined(__x86_64__)
    __asm__ volatile("stmxcsr %0" : "=m"(now.mxcsr));
#endif
    return now;
}

void Switch(const Environment& to) {
    std::uint32_t words[7];
    __asm__ volatile("fnstenv %0" : "=m"(words));
    words[0] = (words[0] & ~0xFFFFu) | to.x87_control;
    words[1] = (words[1] & ~std::uint32_t{kFlags}) | to.x87_status;
    __asm__ volatile("fldenv %0" : : "m"(words) : "memory");
#if defined(__x86_64__)
    __asm__ volatile("ldmxcsr %0" : : "m"(to.mxcsr) : "memory");
#endif
}

// Exact arithmetic, which traps if an exception waits to be delivered.
void Compute() {
    __asm__ volatile("fld1\n fld1\n faddp\n fstp %%st(0)\n fwait" : : : "st", "memory");
}

TEST(StudioColor, EnvironmentOfTheCallerDoesNotMatter) {
    constexpr std::uint32_t kDefault = 0x1F80;
    constexpr Environment kEnvironments[] = {
        {0x037F, 0, kDefault},                              // 64 bits of precision
        {0x027F, 0, kDefault},                              // 53 bits
        {0x007F, 0, 0x1F80 | 0x2000},                       // 24 bits; rounding down
        {0x0F7F, 0, 0x1F80 | 0x4000},                       // rounding toward zero; up
        {0x0B7F, 0, 0x1F80 | 0x6000},                       // rounding up; toward zero
        {0x0340, 0, 0x0000},                                // all exceptions unmasked
        {0x035F, 0, 0x0F80},                                // an inexact result would trap
        {0x037F, 0x20, 0x1FA0},                             // flags that stand
        {0x037F, 0x3D, 0x1FBD},       {0x037F, 0, 0x9FC0},  // denormals flushed to zero
    };
    constexpr std::uint32_t kStep = 2531;
    const Environment before = Now();
    for (const Environment& environment : kEnvironments) {
        Hash hash;
        bool kept = true;
        Switch(environment);
        const Environment switched = Now();
        for (std::uint32_t code = 0; code < 1 << 24; code += kStep) {
            hash.Add(StudioYuv(ColorOf(code)));
            kept = kept && Now() == switched;
        }
        Compute();
        Switch(before);
        SCOPED_TRACE(testing::Message() << std::hex << environment.x87_control << " "
                                        << environment.x87_status << " " << environment.mxcsr);
        EXPECT_EQ(switched.x87_control, environment.x87_control);
        EXPECT_EQ(switched.x87_status, environment.x87_status);
        EXPECT_TRUE(kept);
        EXPECT_EQ(hash.Value(), kSomeColors);
    }
}

}  // namespace
}  // namespace pxb::test
