#include "convert/rgb_to_yuv.h"

#include <gtest/gtest.h>

#include "convert/kernel_list.h"
#include "effort.h"

namespace pxb::test {
namespace {

constexpr FormatPair kPairs[] = {
    {PXB_RGB24, PXB_I420}, {PXB_RGB32, PXB_YV12}, {PXB_RGB24, PXB_YUY2},
    {PXB_RGB32, PXB_YUY2}, {PXB_RGB32, PXB_NV12}, {PXB_RGB32, PXB_AYUV32},
};

struct Bitmap {
    std::vector<Byte> bytes;
    ImageBuffer record;

    Bitmap(PixelFormat format, Size size) : record(Describe(format, size, 0)) {
        bytes.resize(static_cast<std::size_t>(record.stride) * size.height * 3 / 2);
        record.data = bytes.data();
    }
    void Put(int x, int y, Byte b, Byte g, Byte r) {
        Byte* const pixel = &bytes[y * record.stride + x * BytesPerPixel(record.format)];
        pixel[0] = b, pixel[1] = g, pixel[2] = r;
    }
};

void ExpectTheReference(FormatPair pair, const ImageBuffer& src) {
    const Size size = {src.width, src.height};
    Bitmap expected(pair.to, size), got(pair.to, size);
    ConvertByReference(expected.record, src, ::Processor::kPlain);
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        ASSERT_EQ(PxbColorSpaceConv(&got.record, &src), PXB_SUCCESS);
        ASSERT_TRUE(got.bytes == expected.bytes) << variant.name << ", to format " << pair.to;
    }
}

TEST(RgbToYuv, EveryKernelGivesTheBytesOfTheReference) {
    std::vector<ListedKernel> kernels;
    const auto list = [&](const char* target, FormatPair formats, auto* kernel) {
        kernels.push_back(List(target, formats, Flips::kSource, kernel));
    };
#define PXB_LIST(target)                                                \
    list(#target, {PXB_RGB24, PXB_I420}, target::ConvertRgb24ToYuv420); \
    list(#target, {PXB_RGB32, PXB_YV12}, target::ConvertRgb32ToYuv420); \
    list(#target, {PXB_RGB24, PXB_YUY2}, target::ConvertRgb24ToYuy2);   \
    list(#target, {PXB_RGB32, PXB_YUY2}, target::ConvertRgb32ToYuy2);   \
    list(#target, {PXB_RGB32, PXB_NV12}, target::ConvertRgb32ToNv12);   \
    list(#target, {PXB_RGB32, PXB_AYUV32}, target::ConvertRgb32ToAyuv32)
    PXB_LIST(plain);
    PXB_LIST(pairwise);
    PXB_LIST(mmx);
    PXB_LIST(sse2);
    PXB_LIST(avx2);
    PXB_LIST(avx512);
#undef PXB_LIST
    ExpectTheReference(kernels);
}

// Each colour fills a block of 2 x 2 pixels.
TEST(RgbToYuv, AllColors) {
    for (const FormatPair pair : kPairs) {
        Bitmap src(pair.from, {512, 512});
        for (int r = 0; r < 256; ++r) {
            if (!IsTried(r)) continue;
            for (int y = 0; y < 512; ++y)
                for (int x = 0; x < 512; ++x)
                    src.Put(x, y, static_cast<Byte>(x / 2), static_cast<Byte>(y / 2),
                            static_cast<Byte>(r));
            ASSERT_NO_FATAL_FAILURE(ExpectTheReference(pair, src.record)) << "red " << r;
        }
    }
}

// Every way to put the eight corners of the colour cube into a block.
TEST(RgbToYuv, BlocksOfExtremes) {
    for (const FormatPair pair : kPairs) {
        Bitmap src(pair.from, {128, 128});
        for (int y = 0; y < 128; ++y)
            for (int x = 0; x < 128; ++x) {
                const int block = y / 2 * 64 + x / 2;
                const int corner = block >> 3 * (y % 2 * 2 + x % 2);
                const auto channel = [&](int bit) {
                    return static_cast<Byte>((corner >> bit & 1) * 255);
                };
                src.Put(x, y, channel(0), channel(1), channel(2));
            }
        ASSERT_NO_FATAL_FAILURE(ExpectTheReference(pair, src.record));
    }
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
    for (const FormatPair pair : {FormatPair{PXB_RGB24, PXB_I420}, FormatPair{PXB_RGB32, PXB_I420}})
        for (const auto& c : kCases) {
            Bitmap src(pair.from, {2, 2}), dst(pair.to, {2, 2});
            for (int i = 0; i < 4; ++i) src.Put(i % 2, i / 2, c.b, c.g, c.r);
            ASSERT_EQ(PxbColorSpaceConv(&dst.record, &src.record), PXB_SUCCESS);
            EXPECT_EQ(dst.bytes, (std::vector<Byte>{c.y, c.y, c.y, c.y, c.u, c.v}));
        }
}

}  // namespace
}  // namespace pxb::test
