#include "core/studio_color.h"

#include <gtest/gtest.h>

namespace pxb::test {
namespace {

Rgb ColorOf(std::uint32_t code) {  // 0xBBGGRR
    return {static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(code >> 8),
            static_cast<std::uint8_t>(code >> 16)};
}

constexpr std::uint64_t kNothing = 1469598103934665603u;

void AddTo(std::uint64_t& hash, Yuv yuv) {  // FNV-1a
    for (const std::uint8_t byte : {yuv.y, yuv.u, yuv.v}) hash = (hash ^ byte) * 1099511628211u;
}

// The same on every build.
constexpr std::uint64_t kAllColors = 0xeb8dc35f99b44a14;

// A double lies next to the exact value, which it can leave only where that is a whole number: then
// truncation may lose one.
bool IsTruncated(int thousandths, std::uint8_t got) {
    const int whole = thousandths / 1000;
    return got == whole || (got == whole - 1 && thousandths % 1000 == 0);
}

TEST(StudioColor, AllColors) {
    std::uint64_t hash = kNothing;
    for (std::uint32_t code = 0; code < 1 << 24; ++code) {
        const Rgb c = ColorOf(code);
        const Yuv yuv = StudioYuv(c);
        AddTo(hash, yuv);
        ASSERT_TRUE(IsTruncated(504 * c.g + 257 * c.r + 98 * c.b + 16000, yuv.y) &&
                    IsTruncated(439 * c.b - 291 * c.g - 148 * c.r + 128000, yuv.u) &&
                    IsTruncated(439 * c.r - 368 * c.g - 71 * c.b + 128000, yuv.v))
            << std::hex << code << ": " << int{yuv.y} << " " << int{yuv.u} << " " << int{yuv.v};
    }
    EXPECT_EQ(hash, kAllColors);
}

}  // namespace
}  // namespace pxb::test
