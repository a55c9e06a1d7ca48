// Choices of a run, taken from bytes: those of a fuzzer, of a file, or of a generator.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace pxb::test {

class Bytes {
  public:
    explicit Bytes(std::span<const std::uint8_t> all) : rest_(all) {}

    // Where no bytes are left, the first of all choices.
    std::uint32_t Take(int bytes) {
        std::uint32_t value = 0;
        for (; bytes > 0 && !rest_.empty(); --bytes, rest_ = rest_.subspan(1))
            value = value << 8 | rest_.front();
        return value;
    }
    int Below(int count) {
        const auto many = static_cast<std::uint32_t>(count);
        return static_cast<int>(Take(many <= 256 ? 1 : 2) % many);  // at most 65536
    }
    int Between(int first, int last) { return first + Below(last - first + 1); }
    bool OneIn(int count) { return Below(count) == 1; }
    template <class T, std::size_t kCount>
    const T& Pick(const T (&choices)[kCount]) {
        return choices[Below(kCount)];
    }
    std::string Rest() const { return {rest_.begin(), rest_.end()}; }

  private:
    std::span<const std::uint8_t> rest_;
};

// The bytes of one trial of an ordinary test, by splitmix64: the same on every build.
inline std::array<std::uint8_t, 96> Generated(std::uint64_t trial) {
    std::array<std::uint8_t, 96> bytes;
    std::uint64_t state = trial << 32;
    for (std::size_t i = 0; i < bytes.size(); i += 8) {
        std::uint64_t z = state += 0x9E3779B97F4A7C15;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
        z = (z ^ z >> 27) * 0x94D049BB133111EB;
        z ^= z >> 31;
        for (int k = 0; k < 8; ++k) bytes[i + k] = static_cast<std::uint8_t>(z >> 8 * k);
    }
    return bytes;
}

}  // namespace pxb::test
