// Images so large that wide variants store around the caches: the same bytes as from SSE2.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "convert/conversion_trial.h"
#include "convert/variant.h"
#include "noise.h"

namespace pxb::test {
namespace {

class LargeImage {
  public:
    LargeImage(PixelFormat format, Size size) {
        record.format = format;
        record.width = size.width;
        record.height = size.height;
        EXPECT_EQ(PxbNew(&record, 0), PXB_SUCCESS);
    }
    ~LargeImage() { PxbDelete(&record); }
    LargeImage(const LargeImage&) = delete;
    LargeImage& operator=(const LargeImage&) = delete;

    void Tile(const std::vector<std::uint8_t>& tile) {
        for (std::size_t at = 0; at < Bytes(); at += tile.size())
            std::memcpy(record.data + at, tile.data(), std::min(tile.size(), Bytes() - at));
    }
    bool operator==(const LargeImage& other) const {
        return std::memcmp(record.data, other.record.data, Bytes()) == 0;
    }

    ImageBuffer record = {};

  private:
    std::size_t Bytes() const {
        const std::size_t first = static_cast<std::size_t>(record.stride) * record.height;
        return Is420(record.format) ? first + first / 2 : first;
    }
};

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
            LargeImage src(formats.from, size), wanted(formats.to, size), dst(formats.to, size);
            src.Tile(tile);
            const auto convert = [&](pxb::Processor words, LargeImage& to) {
                const ForcedProcessor forced(words);
                to.Tile(tile);
                EXPECT_EQ(PxbColorSpaceConv(&to.record, &src.record), PXB_SUCCESS);
            };
            convert({kMmx | kSse | kSse2, 0}, wanted);
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
