// The front end of the conversions: results of every pair of formats, and the bytes of every pair
// that converts, in each variant, for every small size, against the reference.
#include <gtest/gtest.h>

#include <string>

#include "convert/conversion_trial.h"
#include "convert/variant.h"
#include "effort.h"
#include "noise.h"

namespace pxb::test {
namespace {

constexpr int kFormats = 9;
constexpr const char* kNames[] = {"RGB24", "RGB32",  "YV12",   "YUY2", "I420",
                                  "RGB8",  "YUV422", "AYUV32", "NV12"};

constexpr int32_t kResults[kFormats][kFormats] = {
    // [from - 1][to - 1]
    {0, 0, 0, 0, 0, 1, 2, 2, 2},  // RGB24
    {0, 0, 0, 0, 0, 1, 2, 0, 0},  // RGB32
    {0, 0, 0, 0, 0, 1, 2, 2, 1},  // YV12
    {0, 0, 0, 0, 0, 1, 0, 2, 2},  // YUY2
    {0, 0, 0, 0, 0, 1, 2, 2, 2},  // I420
    {0, 1, 1, 1, 1, 1, 2, 2, 2},  // RGB8
    {0, 2, 2, 0, 2, 2, 2, 2, 2},  // YUV422
    {2, 0, 2, 2, 2, 2, 2, 2, 2},  // AYUV32
    {2, 0, 2, 2, 2, 2, 2, 2, 2},  // NV12
};

// 8 x 4 pixels of any format, in memory that is large enough for all of them.
struct Picture {
    std::vector<std::uint8_t> bytes;
    ImageBuffer record;

    Picture(int format, std::uint32_t seed)
        : bytes(Noise(128, seed)), record{bytes.data(), 0,      BytesPerPixel(format) * 8, 8, 4,
                                          format,       nullptr} {}
};

TEST(ColorSpaceConv, ResultOfEveryPair) {
    for (int from = 1; from <= kFormats; ++from)
        for (const int to : {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 10, -1, INT32_MIN, INT32_MAX}) {
            SCOPED_TRACE(testing::Message() << kNames[from - 1] << " to " << to);
            Picture dst(to, 1), src(from, 2);
            const Picture dst_before(to, 1), src_before(from, 2);
            const int32_t wanted = to >= 1 && to <= kFormats ? kResults[from - 1][to - 1] : 2;
            EXPECT_EQ(PxbColorSpaceConv(&dst.record, &src.record), wanted);
            EXPECT_EQ(dst.bytes != dst_before.bytes, wanted == 0);
            EXPECT_EQ(src.bytes, src_before.bytes);
        }
}

TEST(ColorSpaceConv, RefusesNullDataAndUnknownSources) {
    for (const int format : {0, 10, -1, INT32_MIN, INT32_MAX}) {
        Picture dst(PXB_RGB32, 1), src(PXB_RGB32, 2), companion(PXB_RGB8, 3);
        const Picture dst_before(PXB_RGB32, 1), companion_before(PXB_RGB8, 3);
        dst.record.alpha = &companion.record;
        src.record.format = format;
        EXPECT_EQ(PxbColorSpaceConv(&dst.record, &src.record), PXB_BAD_ARGUMENT) << format;
        src.record.format = PXB_RGB32;
        src.record.data = nullptr;
        EXPECT_EQ(PxbColorSpaceConv(&dst.record, &src.record), PXB_BAD_ARGUMENT);
        std::swap(dst.record.data, src.record.data);
        EXPECT_EQ(PxbColorSpaceConv(&dst.record, &src.record), PXB_BAD_ARGUMENT);
        EXPECT_EQ(dst.bytes, dst_before.bytes);
        EXPECT_EQ(companion.bytes, companion_before.bytes);
    }
}

TEST(ColorSpaceConv, OnlyRgb32FillsTheCompanionOfTheDestination) {
    for (int from = 1; from <= kFormats; ++from)
        for (int to = 0; to <= kFormats + 1; ++to) {
            SCOPED_TRACE(testing::Message() << kNames[from - 1] << " to " << to);
            Picture dst(to, 1), src(from, 2), companion(PXB_RGB8, 3), foreign(PXB_RGB8, 4);
            const Picture companion_before(PXB_RGB8, 3), foreign_before(PXB_RGB8, 4);
            dst.record.alpha = &companion.record;
            src.record.alpha = &foreign.record;
            const int32_t result = PxbColorSpaceConv(&dst.record, &src.record);
            EXPECT_EQ(foreign.bytes, foreign_before.bytes);
            if (from != PXB_RGB32) {
                EXPECT_EQ(companion.bytes, companion_before.bytes);
                continue;
            }
            EXPECT_EQ(result, PXB_SUCCESS);
            for (int i = 0; i < 8 * 4; ++i) EXPECT_EQ(companion.bytes[i], src.bytes[4 * i + 3]);

            companion.record.data = nullptr;
            EXPECT_EQ(PxbColorSpaceConv(&dst.record, &src.record), PXB_BAD_ARGUMENT);
        }
}

TEST(ColorSpaceConv, ImagesWithoutPixelsStayAsTheyAre) {
    constexpr Size kSizes[] = {{0, 4}, {8, 0}, {-8, 4}, {8, -4}, {INT32_MIN, INT32_MIN}};
    const bool is_planar[] = {false, false, true, false, true, false, false, false, true};
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        for (int from = 1; from <= kFormats; ++from)
            for (int to = 1; to <= kFormats; ++to) {
                if (kResults[from - 1][to - 1] != 0) continue;
                SCOPED_TRACE(testing::Message() << variant.name << " " << kNames[from - 1] << " to "
                                                << kNames[to - 1]);
                Picture dst(to, 1), src(from, 2);
                const Picture before(to, 1);
                const auto expect_untouched = [&](ImageBuffer a, ImageBuffer b) {
                    EXPECT_EQ(PxbColorSpaceConv(&a, &b), PXB_SUCCESS);
                    EXPECT_EQ(dst.bytes, before.bytes);
                };
                for (const Size size : kSizes) {
                    ImageBuffer empty = src.record;
                    empty.width = size.width, empty.height = size.height;
                    expect_untouched(dst.record, empty);
                    empty = dst.record;
                    empty.width = size.width, empty.height = size.height;
                    // Grey images are walked by their own size alone.
                    if (from != PXB_RGB8) expect_untouched(empty, src.record);
                }
                ImageBuffer upward = src.record;
                upward.stride = -upward.stride;
                if (is_planar[from - 1]) expect_untouched(dst.record, upward);
                upward = dst.record;
                upward.stride = -upward.stride;
                if (is_planar[to - 1]) expect_untouched(upward, src.record);
            }
    }
}

std::vector<FormatPair> PairsThatConvert() {
    std::vector<FormatPair> pairs;
    for (int from = 1; from <= kFormats; ++from)
        for (int to = 1; to <= kFormats; ++to)
            if (kResults[from - 1][to - 1] == 0)
                pairs.push_back({static_cast<PixelFormat>(from), static_cast<PixelFormat>(to)});
    return pairs;
}

std::string NameOf(const testing::TestParamInfo<FormatPair>& pair) {
    return std::string(kNames[pair.param.from - 1]) + "_to_" + kNames[pair.param.to - 1];
}

// Equal sizes, a larger destination, or a larger source, in turn.
Size Enlarged(Size size, int number, int turn) {
    return number % 3 == turn ? Size{size.width + 1 + number % 4, size.height + 1 + number % 3}
                              : size;
}

class EveryPair : public testing::TestWithParam<FormatPair> {};

TEST_P(EveryPair, GivesTheBytesOfTheReferenceInEveryVariant) {
    const auto [from, to] = GetParam();
    // Tight planar 4:2:2 has no rows to turn upside down, nor does its partner; 4:2:0 neither.
    const bool has_422 = from == PXB_YUV422 || to == PXB_YUV422;
    const auto can_turn = [&](PixelFormat f) { return !Is420(f) && !has_422; };
    ConversionTrial trial;
    int number = 0;
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        for (int width = 0; width <= 130; width += kThorough || width % 16 < 3 ? 1 : 6)
            for (int height = 0; height <= 5; ++height)
                for (const Placement placement : kPlacements) {
                    ++number;
                    const Size dst_size = Enlarged({width, height}, number, 1);
                    const Size src_size = from == PXB_RGB8 ? Size{width, height}
                                                           : Enlarged({width, height}, number, 2);
                    const ImageBuffer dst =
                        Describe(to, dst_size, number % 5, can_turn(to) && number % 7 == 3);
                    const ImageBuffer src =
                        Describe(from, src_size, number % 4, can_turn(from) && number % 7 == 5);
                    ASSERT_TRUE(
                        trial.Run(dst, src, placement, variant.arithmetic, PxbColorSpaceConv))
                        << variant.name << ", " << width << " x " << height << ", number "
                        << number;
                }
    }
}

INSTANTIATE_TEST_SUITE_P(ColorSpaceConv, EveryPair, testing::ValuesIn(PairsThatConvert()), NameOf);

TEST(Variants, AllRunOnThisMachine) {
    std::string missing;
    for (const char* name : MissingVariants()) missing.append(" ").append(name);
    if (!missing.empty()) GTEST_SKIP() << "not tried, the processor lacks:" << missing;
}

}  // namespace
}  // namespace pxb::test
