// Colour arithmetic of every variant: worked values, and all colours against the reference.
#include <gtest/gtest.h>

#include <map>

#include "convert/conversion_trial.h"
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

// ---- YUV to RGB ----

// To RGB24, the first 16-pixel runs of a row are in 6 bits and the rest in 13, whatever SIMD the
// processor has.
TEST(YuvToRgb, WorkedValues) {
    constexpr struct {
        Byte y, u, v, plain[3], simd[3];  // B G R
    } kCases[] = {
        {16, 128, 128, {0, 0, 0}, {0, 0, 0}},     {235, 128, 128, {254, 254, 254}, {253, 253, 253}},
        {16, 255, 128, {255, 0, 0}, {255, 0, 0}}, {255, 0, 0, {19, 255, 73}, {18, 255, 72}},
        {81, 90, 239, {0, 0, 252}, {0, 0, 252}},
    };
    constexpr Size kTested = {50, 1};
    for (const auto& c : kCases)
        for (const Variant& variant : RunnableVariants()) {
            SCOPED_TRACE(testing::Message() << variant.name << " of " << int{c.y} << " " << int{c.u}
                                            << " " << int{c.v});
            const ForcedProcessor forced(variant.words);
            Image yuy2(PXB_YUY2, kTested), rgb24(PXB_RGB24, kTested), rgb32(PXB_RGB32, kTested);
            for (int x = 0; x < kTested.width; ++x) {
                yuy2.At(x, 0)[0] = c.y;
                yuy2.At(x, 0)[1] = x % 2 ? c.v : c.u;
            }
            ASSERT_EQ(PxbColorSpaceConv(&rgb24.record, &yuy2.record), PXB_SUCCESS);
            ASSERT_EQ(PxbColorSpaceConv(&rgb32.record, &yuy2.record), PXB_SUCCESS);
            const bool is_plain = variant.arithmetic == ::Processor::kPlain;
            for (int x = 0; x < kTested.width; ++x)
                for (int i = 0; i < 3; ++i) {
                    ASSERT_EQ(rgb24.At(x, 0)[i], x < 48 ? c.simd[i] : c.plain[i]) << x;
                    ASSERT_EQ(rgb32.At(x, 0)[i], is_plain ? c.plain[i] : c.simd[i]) << x;
                    ASSERT_EQ(rgb32.At(x, 0)[3], 0) << x;
                }
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

// ---- RGB to YUV ----

constexpr FormatPair kRgbToYuv[] = {
    {PXB_RGB24, PXB_I420}, {PXB_RGB32, PXB_YV12}, {PXB_RGB24, PXB_YUY2},
    {PXB_RGB32, PXB_YUY2}, {PXB_RGB32, PXB_NV12}, {PXB_RGB32, PXB_AYUV32},
};

void Put(const Image& rgb, int x, int y, int b, int g, int r) {
    Byte* const pixel = rgb.At(x, y);
    pixel[0] = static_cast<Byte>(b);
    pixel[1] = static_cast<Byte>(g);
    pixel[2] = static_cast<Byte>(r);
}

TEST(RgbToYuv, WorkedValues) {
    constexpr struct {
        Byte b, g, r, y, u, v;
    } kCases[] = {
        {255, 255, 255, 235, 128, 128},
        {0, 0, 0, 16, 128, 128},
        {255, 0, 0, 40, 239, 110},
        {0, 0, 255, 81, 90, 239},
    };
    for (const PixelFormat from : {PXB_RGB24, PXB_RGB32})
        for (const auto& c : kCases) {
            Image src(from, {2, 2}), dst(PXB_I420, {2, 2});
            for (int i = 0; i < 4; ++i) Put(src, i % 2, i / 2, c.b, c.g, c.r);
            ASSERT_EQ(PxbColorSpaceConv(&dst.record, &src.record), PXB_SUCCESS);
            EXPECT_EQ(dst.First(6), (std::vector<Byte>{c.y, c.y, c.y, c.y, c.u, c.v}));
        }
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

// Every way to put the eight corners of the colour cube into a block.
TEST(RgbToYuv, BlocksOfExtremes) {
    for (const FormatPair pair : kRgbToYuv) {
        Image src(pair.from, {128, 128});
        for (int y = 0; y < 128; ++y)
            for (int x = 0; x < 128; ++x) {
                const int block = y / 2 * 64 + x / 2;
                const int corner = block >> 3 * (y % 2 * 2 + x % 2);
                Put(src, x, y, (corner & 1) * 255, (corner >> 1 & 1) * 255,
                    (corner >> 2 & 1) * 255);
            }
        ASSERT_NO_FATAL_FAILURE(ExpectTheReference(pair.to, src.record));
    }
}

// ---- Between YUV layouts ----

// U = 10 above 13 is 12: means are rounded up. The other way, rows share what they have.
TEST(YuvReshuffles, WorkedValues) {
    std::vector<Byte> yuy2 = {1, 10, 2, 20, 3, 13, 4, 20}, i420(6), back(8);
    const ImageBuffer packed = {yuy2.data(), 16, 4, 2, 2, PXB_YUY2, nullptr};
    ImageBuffer planar = {i420.data(), 12, 2, 2, 2, PXB_I420, nullptr}, packed_again = packed;
    packed_again.data = back.data();
    ASSERT_EQ(PxbColorSpaceConv(&planar, &packed), PXB_SUCCESS);
    EXPECT_EQ(i420, (std::vector<Byte>{1, 2, 3, 4, 12, 20}));
    ASSERT_EQ(PxbColorSpaceConv(&packed_again, &planar), PXB_SUCCESS);
    EXPECT_EQ(back, (std::vector<Byte>{1, 12, 2, 20, 3, 12, 4, 20}));
}

}  // namespace
}  // namespace pxb::test
