#include "core/copy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/guarded_memory.h"
#include "support/noise.h"

namespace pxb::test {
namespace {

// Lengths around those at which copies change their way. Source and destination end where their
// memory does, or trail one another within a page.
TEST(CopyBytes, CopiesEveryLength) {
    constexpr int kArea = GuardedMemory::kArea;
    const GuardedMemory memory;
    const std::vector<Byte> from = Noise(kArea, 1), before = Noise(kArea, 2);
    std::memcpy(memory.Second(), from.data(), kArea);
    for (const int trail : {0, 1, 20, 63, 64, 2048})
        for (int bytes = 0; bytes <= kArea - trail; ++bytes) {
            if (bytes > 600 && (bytes + 4) % 1024 >= 8) continue;
            const int at = kArea - bytes;
            std::vector<Byte> expected = before;
            std::copy_n(from.begin() + at - trail, bytes, expected.begin() + at);
            std::memcpy(memory.First(), before.data(), kArea);
            CopyBytes(memory.First() + at, memory.Second() + at - trail, bytes);
            ASSERT_EQ(std::memcmp(memory.First(), expected.data(), kArea), 0)
                << bytes << " bytes, trailing by " << trail;
        }
}

// Also where the destination lies just behind the source by the last bits of the addresses.
TEST(CopyBytes, CopiesLongRows) {
    constexpr int kSize = 1 << 18, kPage = 4096;
    const std::vector<Byte> from = Noise(kSize, 1);
    for (const int bytes : {65535, 65536, 65537, 150001})
        for (const int behind : {0, 20, 100}) {
            std::vector<Byte> to(kSize, 77), expected = to;
            const auto distance = reinterpret_cast<std::uintptr_t>(from.data()) -
                                  reinterpret_cast<std::uintptr_t>(to.data()) + behind;
            const int at = static_cast<int>(distance % kPage);
            std::copy_n(from.begin(), bytes, expected.begin() + at);
            CopyBytes(to.data() + at, from.data(), bytes);
            ASSERT_EQ(to, expected) << bytes << " bytes, behind by " << behind;
        }
}

}  // namespace
}  // namespace pxb::test
