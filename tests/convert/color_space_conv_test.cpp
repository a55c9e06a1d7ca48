// The front end of the conversions: results of every pair of formats, and the bytes of every pair
// that converts, in each variant, for every small size, against the reference.
#include <gtest/gtest.h>

#include <string>

#include "convert/conversion_trial.h"
#include "support/effort.h"
#include "support/image.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

constexpr Size kImageSize = {8, 4};

// Only RGB32 fills the companion of the destination, also where the formats do not convert; the
// result is then that of the companion.
TEST(ColorSpaceConv, ResultOfEveryPair) {
    for (int from = 1; from <= kFormats; ++from)
        for (const int to : {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 10, -1, INT32_MIN, INT32_MAX}) {
            SCOPED_TRACE(testing::Message() << kFormatNames[from] << " to " << to);
            Image dst(to, kImageSize, 1), src(from, kImageSize, 2),
                companion(PXB_RGB8, kImageSize, 3), foreign(PXB_RGB8, kImageSize, 4);
            src.record.alpha = &foreign.record;
            const int32_t wanted = to >= 1 && to <= kFormats ? kResults[from - 1][to - 1] : 2;
            EXPECT_EQ(PxbColorSpaceConv(&dst.record, &src.record), wanted);
            EXPECT_EQ(dst.HasChanged(), wanted == 0);

            dst.record.alpha = &companion.record;
            const bool fills = from == PXB_RGB32;
            EXPECT_EQ(PxbColorSpaceConv(&dst.record, &src.record), fills ? PXB_SUCCESS : wanted);
            EXPECT_EQ(companion.HasChanged(), fills);
            EXPECT_FALSE(src.HasChanged() || foreign.HasChanged());
            if (!fills) continue;
            for (int i = 0; i < 8 * 4; ++i) EXPECT_EQ(*companion.At(i, 0), src.At(i, 0)[3]);
            companion.record.data = nullptr;
            EXPECT_EQ(PxbColorSpaceConv(&dst.record, &src.record), PXB_BAD_ARGUMENT);
        }
}

TEST(ColorSpaceConv, RefusesNullDataAndUnknownSources) {
    Image dst(PXB_RGB32, kImageSize, 1), src(PXB_RGB32, kImageSize, 2),
        companion(PXB_RGB8, kImageSize, 3);
    dst.record.alpha = &companion.record;
    ImageBuffer no_dst = dst.record, no_src = src.record;
    no_dst.data = no_src.data = nullptr;
    EXPECT_EQ(PxbColorSpaceConv(&dst.record, &no_src), PXB_BAD_ARGUMENT);
    EXPECT_EQ(PxbColorSpaceConv(&no_dst, &src.record), PXB_BAD_ARGUMENT);
    for (const int format : {0, 10, -1, INT32_MIN, INT32_MAX}) {
        src.record.format = format;
        EXPECT_EQ(PxbColorSpaceConv(&dst.record, &src.record), PXB_BAD_ARGUMENT) << format;
    }
    EXPECT_FALSE(dst.HasChanged());
    EXPECT_FALSE(companion.HasChanged());
}

TEST(ColorSpaceConv, ImagesWithoutPixelsStayAsTheyAre) {
    constexpr Size kSizes[] = {{0, 4}, {8, 0}, {-8, 4}, {8, -4}, {INT32_MIN, INT32_MIN}};
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        for (const FormatPair pair : PairsThatConvert()) {
            SCOPED_TRACE(testing::Message() << variant.name << " " << NameOf(pair));
            Image dst(pair.to, kImageSize, 1), src(pair.from, kImageSize, 2);
            const auto expect_untouched = [&](ImageBuffer a, ImageBuffer b) {
                EXPECT_EQ(PxbColorSpaceConv(&a, &b), PXB_SUCCESS);
                EXPECT_FALSE(dst.HasChanged());
            };
            for (const Size size : kSizes) {
                ImageBuffer no_src = src.record, no_dst = dst.record;
                no_src.width = no_dst.width = size.width;
                no_src.height = no_dst.height = size.height;
                expect_untouched(dst.record, no_src);
                // Grey images are walked by their own size alone.
                if (pair.from != PXB_RGB8) expect_untouched(no_dst, src.record);
            }
            ImageBuffer upward_src = src.record, upward_dst = dst.record;
            upward_src.stride *= -1;
            upward_dst.stride *= -1;
            if (Is420(pair.from)) expect_untouched(dst.record, upward_src);
            if (Is420(pair.to)) expect_untouched(upward_dst, src.record);
        }
    }
}

class EveryPair : public testing::TestWithParam<FormatPair> {};

TEST_P(EveryPair, GivesTheBytesOfTheReferenceInEveryVariant) {
    std::vector<int> widths;
    for (int width = 0; width <= 130; width += kThorough || width % 16 < 3 ? 1 : 6)
        widths.push_back(width);
    ConversionTrial trial;
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        ASSERT_TRUE(
            trial.Run(GetParam(), widths, ReferenceFor(variant.arithmetic), PxbColorSpaceConv))
            << variant.name;
    }
}

INSTANTIATE_TEST_SUITE_P(ColorSpaceConv, EveryPair, testing::ValuesIn(PairsThatConvert()),
                         [](const auto& pair) { return NameOf(pair.param); });

TEST(Variants, AllRunOnThisMachine) {
    for (const Variant& variant : kAllVariants)
        if (!IsRunnable(variant)) GTEST_SKIP() << "the processor lacks " << variant.name;
}

}  // namespace
}  // namespace pxb::test
