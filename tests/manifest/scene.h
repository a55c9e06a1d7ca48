// What one call of the manifest is given, and what it leaves: images, rectangles and numbers, all
// drawn from a seed by arithmetic that is the same on every build.
#pragma once
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/formats.h"

namespace pxb::test {

using Byte = std::uint8_t;

std::uint64_t HashOf(std::string_view bytes);

// An image to be added.
struct Wanted {
    int format;
    Size size;
    int bits = 0, stride = 0;  // 0: those of the format, and one that is drawn
    bool may_turn = true;      // rows may be stored bottom row first
    Size room = {0, 0};        // a larger extent that its memory has to hold
};

class Scene {
  public:
    explicit Scene(bool tells);

    void Begin(std::uint64_t seed);

    int Draw(int first, int last, const char* what = nullptr);
    bool OneIn(int count) { return Draw(1, count) == 1; }
    Size DrawSize(int least_width, int most_width, int rows);  // every other one even
    // Often smaller than the image, seldom one that does not lie in it, or null: the whole image.
    std::optional<Rect> DrawRect(Size size);

    // Noise, in noise; some without data or of no format. The record stays where it is until the
    // next call.
    ImageBuffer* Add(const Wanted& wanted);

    // Adds to what the call has left besides the images: its result, and what it points to.
    void Leave(std::int64_t value) { left_.push_back(value); }
    void Leave(const ImageBuffer& record);

    std::uint64_t Hash();
    const std::string& Words() const { return words_; }

  private:
    static constexpr std::size_t kArena = 1 << 21, kAlignment = 64;

    Byte* Arena();
    void Tell(const char* what, int value);

    const bool tells_;
    const std::vector<Byte> noise_;
    std::vector<Byte> memory_;
    std::array<ImageBuffer, 4> records_;
    std::array<const Byte*, 4> data_;
    int count_ = 0;
    std::size_t used_ = 0;
    std::uint64_t state_ = 0;
    std::vector<std::int64_t> left_;
    std::string words_;
};

}  // namespace pxb::test
