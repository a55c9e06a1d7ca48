// Images so large that wide variants store around the caches: the same bytes as from SSE2.
#include <gtest/gtest.h>

#include <algorithm>

#include "convert/format_pairs.h"
#include "support/image.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

constexpr FormatPair kPairs[] = {
    {PXB_RGB24, PXB_RGB32},  {PXB_RGB24, PXB_I420}, {PXB_RGB24, PXB_YUY2},  {PXB_RGB32, PXB_RGB24},
    {PXB_RGB32, PXB_I420},   {PXB_RGB32, PXB_NV12}, {PXB_RGB32, PXB_YUY2},  {PXB_I420, PXB_RGB24},
    {PXB_I420, PXB_RGB32},   {PXB_I420, PXB_YUY2},  {PXB_NV12, PXB_RGB32},  {PXB_YUY2, PXB_RGB24},
    {PXB_YUY2, PXB_RGB32},   {PXB_YUY2, PXB_I420},  {PXB_YUY2, PXB_YUV422}, {PXB_YUV422, PXB_YUY2},
    {PXB_YUV422, PXB_RGB24}, {PXB_RGB8, PXB_RGB24},
};

// All rows aligned, and rows of all alignments that drift.
TEST(LargeImages, EveryVariantGivesTheBytesOfSse2) {
    const auto variants = RunnableVariants();
    const auto is_wide = [](const Variant& variant) { return variant.words.wide != 0; };
    if (std::none_of(variants.begin(), variants.end(), is_wide)) GTEST_SKIP();
    const std::vector<std::uint8_t> tile = Noise(1'000'003, 1);
    for (const Size size : {Size{3200, 1880}, {3137, 1914}})
        for (const FormatPair formats : kPairs) {
            Image src(formats.from, size), wanted(formats.to, size), dst(formats.to, size);
            src.Tile(tile);
            const auto convert = [&](pxb::Processor words, Image& to) {
                const ForcedProcessor forced(words);
                to.Tile(tile);
                EXPECT_EQ(PxbColorSpaceConv(&to.record, &src.record), PXB_SUCCESS);
            };
            convert({kAllSse, 0}, wanted);
            for (const Variant& variant : variants) {
                if (!is_wide(variant)) continue;
                convert(variant.words, dst);
                EXPECT_TRUE(dst == wanted)
                    << variant.name << ", " << formats.from << " to " << formats.to << ", "
                    << size.width << " x " << size.height;
            }
        }
}

}  // namespace
}  // namespace pxb::test
