#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "PxbLib.h"
#include "convert/conversion_trial.h"
#include "support/allocations.h"
#include "support/noise.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

TEST(ChannelGet, Results) {
    constexpr struct {
        int format, first, second_to_fourth, unknown;  // results by channel
        bool has_luma;                                 // channel 5 always answers 0
    } kCases[] = {
        {PXB_RGB24, 0, 1, 2, true},   {PXB_RGB32, 0, 0, 2, true},   {PXB_YV12, 1, 1, 1, true},
        {PXB_YUY2, 1, 1, 1, true},    {PXB_I420, 1, 1, 1, true},    {PXB_RGB8, 1, 1, 1, false},
        {PXB_YUV422, 1, 1, 1, false}, {PXB_AYUV32, 2, 2, 2, false}, {PXB_NV12, 2, 2, 2, false},
        {0, 2, 2, 2, false},          {10, 2, 2, 2, false},         {-1, 2, 2, 2, false},
    };
    std::vector<Byte> pixels = Noise(256, 1);
    for (const auto& c : kCases)
        for (int channel = -1; channel <= 7; ++channel) {
            SCOPED_TRACE(testing::Message() << "format " << c.format << ", channel " << channel);
            std::vector<Byte> out(64, 77);
            ImageBuffer dst = {out.data(), 8, 4, 4, 4, PXB_RGB8, nullptr}, no_dst = dst;
            ImageBuffer src = {pixels.data(), 0, 16, 4, 4, c.format, nullptr}, no_src = src;
            no_dst.data = no_src.data = nullptr;
            EXPECT_EQ(PxbChannelGet(&dst, &no_src, channel), PXB_BAD_ARGUMENT);
            EXPECT_EQ(PxbChannelGet(&no_dst, &src, channel), PXB_BAD_ARGUMENT);
            EXPECT_EQ(out, std::vector<Byte>(64, 77));

            const int wanted = channel == 1                   ? c.first
                               : channel >= 2 && channel <= 4 ? c.second_to_fourth
                               : channel == 5                 ? 0
                                                              : c.unknown;
            EXPECT_EQ(PxbChannelGet(&dst, &src, channel), wanted);
            const bool writes = channel == 5 ? c.has_luma : wanted == PXB_SUCCESS;
            EXPECT_EQ(out != std::vector<Byte>(64, 77), writes);
        }
}

constexpr int Grey(int b, int g, int r) {
    return (38656 * g + 19712 * r + 7168 * b) / 65536;
}
static_assert(Grey(0, 255, 0) == 150 && Grey(0, 0, 255) == 76 && Grey(255, 0, 0) == 27);

// Where the widths differ, the destination advances by its stride and the difference.
void TakeByReference(const ImageBuffer& dst, const ImageBuffer& src, int channel) {
    const int step = dst.stride + src.width - dst.width;
    for (int y = 0; y < src.height; ++y)
        for (int x = 0; x < src.width; ++x) {
            const Byte* const p = src.data + y * src.stride + BytesPerPixel(src.format) * x;
            const int taken = src.format == PXB_RGB24 ? Grey(p[0], p[1], p[2]) : p[4 - channel];
            dst.data[y * step + x] = static_cast<Byte>(taken);
        }
}

TEST(ChannelGet, TakesBytesOfRgb) {
    std::vector<int> widths(71);
    std::iota(widths.begin(), widths.end(), 0);
    ConversionTrial trial;
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        for (int channel = 1; channel <= 4; ++channel)
            for (const PixelFormat format : {PXB_RGB24, PXB_RGB32}) {
                if (format == PXB_RGB24 && channel > 1) continue;
                const auto reference = [=](const ImageBuffer& dst, const ImageBuffer& src) {
                    TakeByReference(dst, src, channel);
                };
                const auto get = [=](ImageBuffer* dst, const ImageBuffer* src) {
                    return PxbChannelGet(dst, src, channel);
                };
                ASSERT_TRUE(trial.Run({format, PXB_RGB8}, widths, reference, get))
                    << variant.name << ", " << kFormatNames[format] << ", channel " << channel;
            }
    }
}

// What channel 5 should leave: the luma of the conversion on black, rounded up to even.
std::vector<Byte> Luma(const ImageBuffer& src, int dst_stride) {
    const Size even = {(src.width + 1) / 2 * 2, (src.height + 1) / 2 * 2};
    std::vector<Byte> planes(even.width * even.height * 3 / 2 + 1, 16);  // never without data
    ImageBuffer yv12 = Describe(PXB_YV12, even, 0);
    yv12.data = planes.data();
    ConvertByReference(yv12, src, ::Processor::kPlain);
    std::vector<Byte> bytes(512, 77);
    for (int y = 0; y < even.height; ++y)
        std::copy_n(planes.begin() + y * even.width, even.width, bytes.begin() + y * dst_stride);
    return bytes;
}

TEST(ChannelGet, LumaOfEveryFormatThatConverts) {
    const std::vector<Byte> pixels = Noise(2048, 5);
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        for (const PixelFormat format : {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420})
            for (const Size size : {Size{3, 3}, Size{8, 4}, Size{7, 6}, Size{1, 1}, Size{0, 3},
                                    Size{8, 16}, Size{10, 38}, Size{8, 37}, Size{7, 36}}) {
                SCOPED_TRACE(testing::Message() << variant.name << ", format " << format << ", "
                                                << size.width << " x " << size.height);
                ImageBuffer src = Describe(format, size, 3);
                std::vector<Byte> bytes = pixels, out(512, 77);
                src.data = bytes.data();
                ImageBuffer dst = {out.data(), 8, 11, 8, 8, 0, nullptr};
                const int live = LiveAllocations();
                EXPECT_EQ(PxbChannelGet(&dst, &src, 5), PXB_SUCCESS);
                EXPECT_EQ(LiveAllocations(), live);
                EXPECT_EQ(out, Luma(src, 11));
            }
    }
}

// Sizes without pixels, and of channel 5 those that no image has.
TEST(ChannelGet, SizesThatGiveNothing) {
    std::vector<Byte> pixels = Noise(64, 7), out(64, 77);
    ImageBuffer dst = {out.data(), 8, 4, 4, 4, 0, nullptr};
    const auto expect_nothing = [&](int format, int channel, Size size) {
        const ImageBuffer src = {pixels.data(), 0, 16, size.width, size.height, format, nullptr};
        EXPECT_EQ(PxbChannelGet(&dst, &src, channel), PXB_SUCCESS);
        ASSERT_EQ(out, std::vector<Byte>(64, 77))
            << "channel " << channel << ", " << size.width << " x " << size.height;
    };
    const int live = LiveAllocations();
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        for (const PixelFormat format : {PXB_RGB24, PXB_RGB32})
            for (const int channel : {1, 5})
                for (const Size size : {Size{0, 4}, Size{4, 0}, Size{-4, 4}, Size{4, -4},
                                        Size{-4, -4}, Size{INT32_MIN, 4}, Size{4, INT32_MIN}})
                    expect_nothing(format, channel, size);
    }
    expect_nothing(PXB_RGB32, 5, {1 << 17, 1 << 17});
    expect_nothing(PXB_RGB32, 5, {0, INT32_MAX - 1});
    {
        const FailingAllocation failing(0);
        expect_nothing(PXB_RGB32, 5, {3, 3});
    }
    EXPECT_EQ(LiveAllocations(), live);
}

}  // namespace
}  // namespace pxb::test
