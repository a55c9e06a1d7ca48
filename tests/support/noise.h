// Random bytes that repeat from run to run; one in four is an extreme of some sample range.
#pragma once
#include <algorithm>
#include <cstdint>
#include <vector>

namespace pxb::test {

inline std::vector<std::uint8_t> Noise(std::size_t size, std::uint32_t seed) {
    constexpr std::uint8_t kExtremes[] = {0, 1, 16, 127, 128, 235, 254, 255};
    std::vector<std::uint8_t> bytes(size);
    std::uint32_t state = 2463534242u + seed;
    std::generate(bytes.begin(), bytes.end(), [&] {
        state ^= state << 13, state ^= state >> 17, state ^= state << 5;
        const std::uint32_t bits = state >> 8;
        return (bits & 0x300) ? static_cast<std::uint8_t>(bits) : kExtremes[bits & 7];
    });
    return bytes;
}

}  // namespace pxb::test
