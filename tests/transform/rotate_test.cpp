// PxbRotate: exact sines, every whole angle, and sources too large for the usual arithmetic.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>

#include "core/float_guard.h"
#include "fuzz/rotations.h"
#include "transform/sine_cosine.h"

namespace pxb::test {
namespace {

class Hash {
  public:
    void Add(std::uint64_t value) { hash_ = (hash_ ^ value) * 1099511628211u; }
    std::uint64_t Value() const { return hash_; }

  private:
    std::uint64_t hash_ = 1469598103934665603u;
};

// Angles all over the range, from which few turns are whole.
int AngleNumber(std::uint32_t i) {
    std::uint32_t state = 1;
    for (; i > 0; --i) state = state * 1664525u + 1013904223u;
    return static_cast<int>(state ^ 0x80000000u);
}

TEST(Rotate, SineAndCosineAreCorrectlyRounded) {
    Hash hash;
    const auto add = [&](int angle) {
        const Turn turn = TurnOf(angle);
        hash.Add(std::bit_cast<std::uint64_t>(turn.sine));
        hash.Add(std::bit_cast<std::uint64_t>(turn.cosine));
    };
    for (int angle = -720; angle <= 720; ++angle) add(angle);
    for (std::uint32_t i = 1; i <= 4000; ++i) add(AngleNumber(i));
    for (const int angle : {INT32_MIN, INT32_MAX, 0x7FFFFFA8}) add(angle);
    EXPECT_EQ(hash.Value(), 0x349EA6687C1FEBF3u);  // of 300-bit arithmetic
}

void ExpectTheTurnOfTheReference(int format, Size size, Size most, int angle) {
    SCOPED_TRACE(testing::Message() << kFormatNames[format] << ", " << size.width << " x "
                                    << size.height << ", angle " << angle);
    const Image src(format, size, 1);
    const Size swapped = {size.height, size.width}, whole = angle % 180 == 90 ? swapped : size;
    const Size cut = {std::min(whole.width, most.width), std::min(whole.height, most.height)};
    const Size extent = angle == 180 ? size : cut;
    Image wanted(format, extent, 2);
    const Turn turn = TurnOf(angle);
    {
        const FloatGuard guard;
        RotateByReference(wanted.record, src.record, turn);
    }
    for (const Variant& variant : RunnableVariants()) {
        SCOPED_TRACE(variant.name);
        const ForcedProcessor forced(variant.words);
        Image dst(format, extent, 2);
        ASSERT_EQ(PxbRotate(&dst.record, &src.record, angle), PXB_SUCCESS);
        ASSERT_TRUE(dst == wanted);
    }
}

TEST(Rotate, EveryWholeAngleAsTheReference) {
    for (const int format : {PXB_RGB24, PXB_RGB32}) {
        for (int angle = -720; angle <= 720; ++angle)
            ExpectTheTurnOfTheReference(format, {37, 23}, {64, 64}, angle);
        for (std::uint32_t i = 1; i <= 200; ++i)
            ExpectTheTurnOfTheReference(format, {23, 37}, {64, 64}, AngleNumber(i));
    }
}

// Coordinates that 32 bits of 16.16 cannot hold, and strides that 16 bits cannot.
TEST(Rotate, LargeSourcesAsTheReference) {
    for (const int format : {PXB_RGB24, PXB_RGB32})
        for (const Size size : {Size{33000, 2}, Size{2, 33000}, Size{11000, 3}})
            for (const int angle : {45, 90, 180, 359})
                ExpectTheTurnOfTheReference(format, size, {40, 40}, angle);
}

}  // namespace
}  // namespace pxb::test
