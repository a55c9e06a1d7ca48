// Two bytes each: a length and what to repeat, or 0 and an escape: 0 ends the row, 1 the picture, 2
// moves on by the two bytes that follow, 3 and more are so many single indices, which fill whole
// pairs of bytes.
#include "bmp_runs.h"

#include <array>
#include <string>

#include "error.h"

namespace pxb::tool {
namespace {

constexpr int kEndOfRow = 0, kEndOfPicture = 1, kMove = 2;
constexpr std::int64_t kMaxPixelsAByte = 128;  // 255 in a run of two bytes

class Runs {
  public:
    Runs(InputFile& input, Size size, int bits)
        : input_(input),
          size_(size),
          bits_(bits),
          indices_(std::size_t(size.width) * size.height) {}

    std::vector<std::uint8_t> Read() {
        while (y_ < size_.height) {
            const auto [length, value] = Pair();
            if (length > 0) {
                Put(length, [&, byte = value](int i) { return Index(byte, i); });
            } else if (value == kEndOfRow) {
                x_ = 0;
                ++y_;
            } else if (value == kEndOfPicture) {
                break;
            } else if (value == kMove) {
                const auto [right, up] = Pair();
                CheckRoom(right);
                x_ += right;
                y_ += up;
            } else {
                PutSingle(value);
            }
        }
        return std::move(indices_);
    }

  private:
    std::array<std::uint8_t, 2> Pair() {
        std::array<std::uint8_t, 2> pair;
        input_.Read(pair.data(), 2, "row " + std::to_string(y_));
        return pair;
    }

    // Of the two indices in a byte the first is the higher one.
    std::uint8_t Index(std::uint8_t byte, int i) const {
        if (bits_ == 8) return byte;
        return i % 2 == 0 ? byte >> 4 : byte & 15;
    }

    void PutSingle(int count) {
        std::array<std::uint8_t, 256> bytes;
        const int used = bits_ == 8 ? count : (count + 1) / 2;
        input_.Read(bytes.data(), used + used % 2, "row " + std::to_string(y_));
        Put(count, [&](int i) { return Index(bytes[bits_ == 8 ? i : i / 2], i); });
    }

    void CheckRoom(int count) const {
        if (count > size_.width - x_)
            throw Error(input_.name(), "row " + std::to_string(y_),
                        std::to_string(std::int64_t{x_} + count) + " pixels",
                        "the width is " + std::to_string(size_.width));
    }

    template <class At>
    void Put(int count, At at) {
        CheckRoom(count);
        std::uint8_t* const row = &indices_[std::size_t(y_) * size_.width];
        for (int i = 0; i < count; ++i) row[x_++] = at(i);
    }

    InputFile& input_;
    Size size_;
    int bits_;
    std::int32_t x_ = 0, y_ = 0;  // y counts from the bottom
    std::vector<std::uint8_t> indices_;
};

}  // namespace

std::vector<std::uint8_t> ReadBmpRuns(InputFile& input, Size size, int bits) {
    input.Require(std::int64_t{size.width} * size.height / kMaxPixelsAByte, "pixels");
    return Runs(input, size, bits).Read();
}

}  // namespace pxb::tool
