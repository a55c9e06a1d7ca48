// Colour arithmetic of every variant: worked values, and all colours against the reference.
#include <gtest/gtest.h>

#include <map>

#include "convert/format_pairs.h"
#include "support/effort.h"
#include "support/image.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

void ExpectTheReference(PixelFormat to, const ImageBuffer& src) {
    const Size size = {src.width, src.height};
    std::map<::Processor, Image> expected;
    Image got(to, size);
    for (const Variant& variant : RunnableVariants()) {
        // RGB to YUV is the same on all processors.
        const auto arithmetic = IsRgb(src.format) ? ::Processor::kPlain : variant.arithmetic;
        const auto [entry, is_new] = expected.try_emplace(arithmetic, to, size);
        if (is_new) ConvertByReference(entry->second.record, src, arithmetic);
        const ForcedProcessor forced(variant.words);
        ASSERT_EQ(PxbColorSpaceConv(&got.record, &src), PXB_SUCCESS);
        ASSERT_TRUE(got == entry->second)
            << variant.name << ", " << kFormatNames[src.format] << " to " << kFormatNames[to];
    }
}

// The reference by hand, and so the library: see the other tests. B G R, or Y U Y V.
TEST(Reference, WorkedValues) {
    constexpr auto kPlain = ::Processor::kPlain, kSimd = ::Processor::kSse2;
    const struct {
        ::Processor arithmetic;
        PixelFormat from, to;
        Size size;
        std::vector<Byte> before, after;
    } kCases[] = {
        {kPlain, PXB_YUY2, PXB_RGB32, {2, 1}, {16, 128, 235, 128}, {0, 0, 0, 0, 254, 254, 254, 0}},
        {kSimd, PXB_YUY2, PXB_RGB32, {2, 1}, {16, 128, 235, 128}, {0, 0, 0, 0, 253, 253, 253, 0}},
        {kPlain, PXB_YUY2, PXB_RGB24, {2, 1}, {16, 255, 16, 128}, {255, 0, 0, 255, 0, 0}},
        {kPlain, PXB_YUY2, PXB_RGB32, {2, 1}, {255, 0, 255, 0}, {19, 255, 73, 0, 19, 255, 73, 0}},
        {kSimd, PXB_YUY2, PXB_RGB32, {2, 1}, {255, 0, 255, 0}, {18, 255, 72, 0, 18, 255, 72, 0}},
        {kSimd, PXB_YUY2, PXB_RGB32, {2, 1}, {81, 90, 81, 239}, {0, 0, 252, 0, 0, 0, 252, 0}},
        {kPlain, PXB_RGB24, PXB_YUY2, {2, 1}, {0, 0, 0, 255, 255, 255}, {16, 128, 235, 128}},
        {kPlain, PXB_RGB24, PXB_YUY2, {2, 1}, {255, 0, 0, 255, 0, 0}, {40, 239, 40, 110}},
        {kPlain, PXB_RGB24, PXB_YUY2, {2, 1}, {0, 0, 255, 0, 0, 255}, {81, 90, 81, 239}},
        // U = 10 above 13 is 12: means are rounded up. The other way, rows share what they have.
        {kPlain, PXB_YUY2, PXB_I420, {2, 2}, {1, 10, 2, 20, 3, 13, 4, 20}, {1, 2, 3, 4, 12, 20}},
        {kPlain, PXB_I420, PXB_YUY2, {2, 2}, {1, 2, 3, 4, 12, 20}, {1, 12, 2, 20, 3, 12, 4, 20}},
    };
    for (const auto& c : kCases) {
        Image src(c.from, c.size), dst(c.to, c.size);
        std::copy(c.before.begin(), c.before.end(), src.record.data);
        ConvertByReference(dst.record, src.record, c.arithmetic);
        EXPECT_EQ(dst.First(c.after.size()), c.after) << &c - std::begin(kCases);
    }
}

// One image per U: V across, Y down, where pixels that share chroma have different Y.
TEST(YuvToRgb, AllColors) {
    constexpr FormatPair kPairs[] = {{PXB_I420, PXB_RGB24},  {PXB_YV12, PXB_RGB32},
                                     {PXB_NV12, PXB_RGB32},  {PXB_YUV422, PXB_RGB24},
                                     {PXB_YUY2, PXB_RGB32},  {PXB_YUY2, PXB_RGB24},
                                     {PXB_AYUV32, PXB_RGB32}};
    constexpr Size kTested = {512, 128};
    Image yuy2(PXB_YUY2, kTested);
    for (int u = 0; u < 256; ++u) {
        if (!IsTried(u)) continue;
        for (int y = 0; y < kTested.height; ++y)
            for (int x = 0; x < kTested.width; ++x) {
                yuy2.At(x, y)[0] = static_cast<Byte>(y / 2 * 4 + y % 2 * 2 + x % 2);
                yuy2.At(x, y)[1] = static_cast<Byte>(x % 2 ? x / 2 : u);
            }
        for (const FormatPair pair : kPairs) {
            Image src(pair.from, kTested);
            ConvertByReference(src.record, yuy2.record, ::Processor::kPlain);
            ASSERT_NO_FATAL_FAILURE(ExpectTheReference(pair.to, src.record)) << "U = " << u;
        }
    }
}

constexpr FormatPair kRgbToYuv[] = {
    {PXB_RGB24, PXB_I420}, {PXB_RGB32, PXB_YV12}, {PXB_RGB24, PXB_YUY2},
    {PXB_RGB32, PXB_YUY2}, {PXB_RGB32, PXB_NV12}, {PXB_RGB32, PXB_AYUV32},
};

void Put(const Image& rgb, int x, int y, int b, int g, int r) {
    Byte* const pixel = rgb.At(x, y);
    pixel[0] = static_cast<Byte>(b), pixel[1] = static_cast<Byte>(g),
    pixel[2] = static_cast<Byte>(r);
}

// Each colour fills a block of 2 x 2 pixels.
TEST(RgbToYuv, AllColors) {
    for (const FormatPair pair : kRgbToYuv) {
        Image src(pair.from, {512, 512});
        for (int r = 0; r < 256; ++r) {
            if (!IsTried(r)) continue;
            for (int y = 0; y < 512; ++y)
                for (int x = 0; x < 512; ++x) Put(src, x, y, x / 2, y / 2, r);
            ASSERT_NO_FATAL_FAILURE(ExpectTheReference(pair.to, src.record)) << "red " << r;
        }
    }
}

TEST(Variants, AllRunOnThisMachine) {
    for (const Variant& variant : kAllVariants)
        if (!IsRunnable(variant)) GTEST_SKIP() << "the processor lacks " << variant.name;
}

}  // namespace
}  // namespace pxb::test
