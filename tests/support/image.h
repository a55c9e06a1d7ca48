// An image with memory of its own, large enough for the planes of any format.
#pragma once
#include <cstring>

#include "support/formats.h"
#include "support/noise.h"

namespace pxb::test {

using Byte = std::uint8_t;

// A record without data, of rows `padding` bytes longer than needed; bottom_up: of negative stride.
// Its bits are those of the first plane.
inline ImageBuffer Describe(int format, Size size, int padding = 0, bool bottom_up = false) {
    const int bytes = BytesPerPixel(format);
    const std::int64_t row = std::int64_t{bytes} * size.width + padding;
    const auto stride = static_cast<std::int32_t>(bottom_up ? -row : row);
    return {nullptr, 8 * bytes, stride, size.width, size.height, format, nullptr};
}

class Image {
  public:
    // All bytes are 0 or, with a seed, noise. The first lies where a large block from PxbNew may.
    Image(int format, Size size, std::uint32_t seed = 0)
        : record(Describe(format, size)),
          bytes(2 * static_cast<std::size_t>(record.stride) * size.height),
          memory_(bytes + kAlignment) {
        const auto address = reinterpret_cast<std::uintptr_t>(memory_.data());
        first_ = record.data = memory_.data() + (-address & (kAlignment - 1));
        if (!seed) return;
        before_ = Noise(bytes, seed);
        Tile(before_);
    }
    Image(Image&&) = default;

    void Tile(const std::vector<Byte>& tile) {
        for (std::size_t at = 0; at < bytes; at += tile.size())
            std::memcpy(first_ + at, tile.data(), std::min(tile.size(), bytes - at));
    }
    Byte* At(int x, int y) const {
        return first_ + y * record.stride + x * BytesPerPixel(record.format);
    }
    std::vector<Byte> First(std::size_t count) const { return {first_, first_ + count}; }
    bool operator==(const Image& other) const {
        return bytes == other.bytes && std::memcmp(first_, other.first_, bytes) == 0;
    }
    bool HasChanged() const { return std::memcmp(first_, before_.data(), bytes) != 0; }

    ImageBuffer record;
    const std::size_t bytes;

  private:
    static constexpr std::size_t kAlignment = 64;
    std::vector<Byte> memory_, before_;
    Byte* first_;
};

}  // namespace pxb::test
