// PxbRotate in every variant: results, bytes against the reference, and the same bytes on every
// build whatever the caller's floating-point unit is set to.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>

#include "core/float_guard.h"
#include "rotation.h"
#include "support/allocations.h"
#include "support/effort.h"
#include "support/float_environment.h"
#include "support/trial.h"
#include "support/variants.h"
#include "transform/sine_cosine.h"

namespace pxb::test {
namespace {

Turn TurnOf(int angle) {
    const FloatGuard guard;
    Turn turn = {angle, 0, 0};
    plain::ComputeSineAndCosine((angle / 180.0) * 3.1415926535898, &turn.sine, &turn.cosine);
    return turn;
}

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

// ---- Bytes ----

struct Shape {
    Size dst, src;
    int dst_bits, src_bits;
    int format = PXB_RGB32;
    int padding = 0;  // of both; the destination has 4 more
    bool bottom_up = false;
};

ImageBuffer RecordOf(int format, Size size, int bits, int padding, bool bottom_up) {
    const int stride = size.width * bits / 8 + padding;
    return {nullptr, bits, bottom_up ? -stride : stride, size.width, size.height, format, nullptr};
}

// The exact copies at the edges go by the destination's size. Makes it so small that they stay in
// the source.
Size WithinSource(const Shape& shape, int angle) {
    const int across = shape.src.width * shape.src_bits / shape.dst_bits, down = shape.src.height;
    const auto [width, height] = shape.dst;
    if (angle == 180) return {std::min(width, across), std::min(height, down)};
    if (angle == 90 || angle == 270) return {std::min(width, down), std::min(height, across)};
    return shape.dst;
}

Visited BytesOf(const ImageBuffer& image, int bytes_per_pixel) {
    Visited visited;
    for (int y = 0; y < image.height; ++y)
        visited.luma.Add(y * image.stride, image.width * bytes_per_pixel);
    return visited;
}

class RotateTrial : private Trial {
  public:
    testing::AssertionResult Run(const Shape& shape, Turn turn) {
        const Size size = WithinSource(shape, turn.angle);
        const auto placement = number_++ % 2 ? Placement::kFront : Placement::kBack;
        ImageBuffer dst = RecordOf(shape.format, size, shape.dst_bits, shape.padding + 4,
                                   shape.bottom_up),
                    src = RecordOf(shape.format, shape.src, shape.src_bits, shape.padding,
                                   shape.bottom_up);
        // Which steps through the destination by the source's stride: inside it, if that is not larger.
        if (turn.angle == 180 && std::abs(dst.stride) < std::abs(src.stride))
            dst.stride = src.stride;
        Place(dst, dst_memory, BytesOf(dst, shape.dst_bits / 8), placement);
        Place(src, src_memory, BytesOf(src, shape.src_bits / 8), placement);
        const auto expect = [&](const ImageBuffer& to, const ImageBuffer& from) {
            const FloatGuard guard;
            RotateByReference(to, from, turn);
        };
        const auto call = [&](ImageBuffer* to, const ImageBuffer* from) {
            return PxbRotate(to, from, turn.angle);
        };
        return Compare(dst, src, expect, call)
               << ", angle " << turn.angle << ", " << size.width << " x " << size.height << " of "
               << shape.dst_bits << " bits from " << shape.src.width << " x " << shape.src.height
               << " of " << shape.src_bits << ", padding " << shape.padding
               << (shape.bottom_up ? ", bottom up" : "");
    }

  private:
    int number_ = 0;
};

constexpr int kDepths[][2] = {{24, 24}, {32, 32}, {24, 32}, {32, 24}, {8, 8}};

TEST(Rotate, EveryWholeAngleAsTheReference) {
    for (const Variant& variant : RunnableVariants()) {
        SCOPED_TRACE(variant.name);
        const ForcedProcessor forced(variant.words);
        RotateTrial trial;
        for (int angle = -720, number = 0; angle <= 720; angle += kThorough ? 1 : 15, ++number) {
            const Turn turn = TurnOf(angle);
            for (int depth = 0; depth < 5; ++depth) {
                if (angle % 90 != 0 && (number + depth) % 5 != 0) continue;
                const auto [dst_bits, src_bits] = kDepths[depth];
                const bool bottom_up = angle % 2;
                for (const Shape& shape :
                     {Shape{{23, 17}, {23, 17}, dst_bits, src_bits, PXB_RGB32, 3, bottom_up},
                      Shape{{14, 41}, {40, 13}, dst_bits, src_bits, PXB_RGB24, 0, bottom_up},
                      Shape{{45, 38}, {21, 22}, dst_bits, src_bits, PXB_RGB8, 1}})
                    ASSERT_TRUE(trial.Run(shape, turn));
            }
        }
    }
}

TEST(Rotate, EverySmallSizeAsTheReference) {
    constexpr int kAngles[] = {0,   30,  45,  90,  120, 135,  180, 200,
                               270, 300, 359, 360, 450, -180, 540};
    std::vector<Turn> turns;
    for (const int angle : kAngles) turns.push_back(TurnOf(angle));
    for (const Variant& variant : RunnableVariants()) {
        SCOPED_TRACE(variant.name);
        const ForcedProcessor forced(variant.words);
        RotateTrial trial;
        for (int width = 1; width <= 70; width += kThorough ? 1 : 9)
            for (const int height : {1, 2, 7, 19})
                for (const Turn turn : turns) {
                    const bool turned = turn.angle % 180 != 0,
                               bottom_up = (width + height) % 3 == 0;
                    const Size wide = {width, height}, tall = {height, width};
                    const int bits = width % 2 ? 24 : 32;
                    ASSERT_TRUE(trial.Run(
                        {turned ? tall : wide, wide, bits, bits, PXB_RGB24, 0, bottom_up}, turn));
                    ASSERT_TRUE(trial.Run({turned ? wide : tall, tall, 56 - bits, 56 - bits,
                                           PXB_RGB32, width % 5, bottom_up},
                                          turn));
                }
    }
}

TEST(Rotate, PlanarImagesAsTheReference) {
    for (const Variant& variant : RunnableVariants()) {
        SCOPED_TRACE(variant.name);
        const ForcedProcessor forced(variant.words);
        Trial trial;
        for (int width = 2; width <= 142; width += width < 74 ? 2 : 34)
            for (const int height : {2, 4, 14, 16, 18, 34})
                for (const int angle : {0, 45, 90, 180, 270, 360, -90})
                    for (const bool tall : {false, true}) {
                        SCOPED_TRACE(testing::Message() << width << " x " << height << ", angle "
                                                        << angle << (tall ? ", tall" : ""));
                        const Size size = tall ? Size{height, width} : Size{width, height};
                        const bool turned = angle % 180 != 0;
                        ImageBuffer src = Describe(tall ? PXB_I420 : PXB_YV12, size), dst = src;
                        if (turned) std::swap(dst.width, dst.height);
                        dst.stride = dst.width;
                        Visited all;
                        all.luma.Add(0, size.width * size.height * 3 / 2);
                        const auto placement =
                            width % 4 ? Trial::Placement::kFront : Trial::Placement::kBack;
                        Trial::Place(dst, trial.dst_memory, all, placement);
                        Trial::Place(src, trial.src_memory, all, placement);
                        ASSERT_TRUE(trial.Compare(
                            dst, src,
                            [&](const ImageBuffer& to, const ImageBuffer& from) {
                                RotateByReference(to, from, {angle, 0, 0});
                            },
                            [&](ImageBuffer* to, const ImageBuffer* from) {
                                return PxbRotate(to, from, angle);
                            }));
                    }
    }
}

// Coordinates that 32 bits of 16.16 cannot hold, and strides that 16 bits cannot.
TEST(Rotate, LargeSourcesAsTheReference) {
    for (const Variant& variant : RunnableVariants())
        for (const int format : {PXB_RGB24, PXB_RGB32})
            for (const Size size : {Size{33000, 2}, Size{2, 33000}, Size{11000, 3}})
                for (const int angle : {45, 90, 180, 359}) {
                    SCOPED_TRACE(testing::Message() << variant.name << ", " << kFormatNames[format]
                                                    << ", " << size.width << ", angle " << angle);
                    const ForcedProcessor forced(variant.words);
                    const Image src(format, size, 1);
                    const int width = std::min(size.width, 40), height = std::min(size.height, 40);
                    const Size cut = angle == 90    ? Size{height, width}
                                     : angle == 180 ? size
                                                    : Size{width, height};
                    Image dst(format, cut, 2), wanted(format, cut, 2);
                    const Turn turn = TurnOf(angle);
                    {
                        const FloatGuard guard;
                        RotateByReference(wanted.record, src.record, turn);
                    }
                    ASSERT_EQ(PxbRotate(&dst.record, &src.record, angle), PXB_SUCCESS);
                    ASSERT_TRUE(dst == wanted);
                }
}

// ---- The same on every build ----

// Of images turned by many angles, into a destination that keeps what is not written.
std::uint64_t HashOfTurns() {
    Hash hash;
    const auto add = [&](int format, int angle) {
        const Image src(format, {61, 47}, 1);
        Image dst(format, {53, 59}, 2);
        if (angle == 180) dst.record.stride = src.record.stride, dst.record.height = 47;
        if (angle == 90 || angle == 270) dst.record.width = 47;
        PxbRotate(&dst.record, &src.record, angle);
        for (const Byte byte : dst.First(dst.bytes)) hash.Add(byte);
    };
    for (const int format : {PXB_RGB24, PXB_RGB32}) {
        for (int angle = -720; angle <= 720; angle += 15) add(format, angle);
        for (std::uint32_t i = 1; i <= 40; ++i) add(format, AngleNumber(i));
    }
    return hash.Value();
}

TEST(Rotate, SameBytesInEveryFloatingPointEnvironment) {
    const FloatEnvironment before = FloatEnvironmentNow();
    for (const FloatEnvironment& environment : kFloatEnvironments) {
        SwitchTo(environment);
        const FloatEnvironment expected = FloatEnvironmentNow();
        const std::uint64_t hash = HashOfTurns();
        ComputeWithX87();
        const FloatEnvironment after = FloatEnvironmentNow();
        SwitchTo(before);
        EXPECT_EQ(hash, 0x1C465F0EEF76E3E4u)
            << std::hex << environment.x87_control << ", " << environment.mxcsr;
        EXPECT_EQ(after, expected);
    }
}

TEST(Rotate, NeedsNoMemory) {
    const Turn turn = TurnOf(30);
    RotateTrial trial;
    const int live = LiveAllocations();
    const FailingAllocation failing(0);
    EXPECT_TRUE(trial.Run({{23, 17}, {23, 17}, 24, 24}, turn));
    EXPECT_EQ(LiveAllocations(), live);
}

// ---- Results ----

TEST(Rotate, ResultOfEveryFormat) {
    constexpr int kResults[] = {2, 0, 0, 0, 1, 0, 0, 1, 2, 2, 2};
    const auto expect = [](ImageBuffer dst, ImageBuffer src, int wanted) {
        std::vector<Byte> bytes = Noise(4096, 1);
        const std::vector<Byte> before = bytes;
        if (dst.data) dst.data = bytes.data();
        EXPECT_EQ(PxbRotate(&dst, &src, 90), wanted) << "format " << src.format;
        const bool draws = wanted == 0 && dst.width > 0 && dst.height > 0;
        EXPECT_EQ(bytes != before, draws) << "format " << src.format;
    };
    for (int format = 0; format <= kFormats + 1; ++format) {
        const Image image(format, {8, 8}, 2);
        const ImageBuffer record = image.record;
        expect(record, record, kResults[format]);
        ImageBuffer other = record;
        other.format = format + 1;
        expect(record, other, PXB_BAD_ARGUMENT);
        other = record, other.data = nullptr;
        expect(record, other, PXB_BAD_ARGUMENT);
        expect(other, record, PXB_BAD_ARGUMENT);
        for (const int extent : {0, -8, INT32_MIN}) {
            if (extent == 0 && Is420(format)) continue;  // sizes are taken on trust
            other = record, other.height = extent;
            expect(other, record, kResults[format]);
            other = record, other.width = extent;
            expect(other, record, kResults[format]);
        }
    }
}

TEST(Rotate, CompanionsFollowWhateverTheResult) {
    for (int format = 0; format <= kFormats + 1; ++format) {
        SCOPED_TRACE(testing::Message() << "format " << format);
        Image dst(format, {8, 8}, 1), src(format, {8, 8}, 2);
        Image dst_alpha(PXB_RGB8, {8, 8}, 3), src_alpha(PXB_RGB8, {8, 8}, 4);
        dst.record.alpha = &dst_alpha.record;
        PxbRotate(&dst.record, &src.record, 90);
        EXPECT_FALSE(dst_alpha.HasChanged());
        src.record.alpha = &src_alpha.record;
        EXPECT_EQ(PxbRotate(&dst.record, &src.record, 90), PXB_SUCCESS);
        for (int i = 0; i < 8; ++i) EXPECT_EQ(*dst_alpha.At(i, 0), *src_alpha.At(7, i));

        dst_alpha.record.format = PXB_YUY2;
        EXPECT_EQ(PxbRotate(&dst.record, &src.record, 90), PXB_BAD_ARGUMENT);
        dst_alpha.record.format = src_alpha.record.format;
        src.record.data = nullptr;
        EXPECT_EQ(PxbRotate(&dst.record, &src.record, 90), PXB_BAD_ARGUMENT);
    }
}

}  // namespace
}  // namespace pxb::test
