#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "PxbLib.h"
#include "allocations.h"
#include "convert/conversion_trial.h"
#include "convert/variant.h"
#include "noise.h"

namespace pxb::test {
namespace {

using Byte = std::uint8_t;

TEST(ChannelGet, Results) {
    std::vector<Byte> pixels = Noise(256, 1);
    for (int format = -1; format <= 10; ++format)
        for (int channel = -1; channel <= 7; ++channel) {
            SCOPED_TRACE(testing::Message() << "format " << format << ", channel " << channel);
            std::vector<Byte> out(64, 77);
            ImageBuffer dst = {out.data(), 8, 4, 4, 4, PXB_RGB8, nullptr};
            ImageBuffer src = {pixels.data(), 0, 16, 4, 4, format, nullptr};
            int32_t wanted = PXB_BAD_ARGUMENT;
            if (format >= PXB_YV12 && format <= PXB_YUV422) wanted = PXB_UNSUPPORTED;
            if (format <= PXB_RGB32 && channel >= 1 && channel <= 4) {
                if (format == PXB_RGB32 || (format == PXB_RGB24 && channel == 1))
                    wanted = PXB_SUCCESS;
                else if (format == PXB_RGB24)
                    wanted = PXB_UNSUPPORTED;
            }
            if (channel == 5) wanted = PXB_SUCCESS;
            const bool writes =
                channel == 5 ? format >= PXB_RGB24 && format <= PXB_I420 : wanted == PXB_SUCCESS;
            EXPECT_EQ(PxbChannelGet(&dst, &src, channel), wanted);
            EXPECT_EQ(out != std::vector<Byte>(64, 77), writes);

            src.data = nullptr;
            EXPECT_EQ(PxbChannelGet(&dst, &src, channel), PXB_BAD_ARGUMENT);
            std::swap(src.data, dst.data);
            src.data = pixels.data(), dst.data = nullptr;
            EXPECT_EQ(PxbChannelGet(&dst, &src, channel), PXB_BAD_ARGUMENT);
        }
}

TEST(ChannelGet, WorkedValues) {
    constexpr struct {
        int format, channel;
        Byte pixel[4], wanted;
    } kCases[] = {
        {PXB_RGB24, 1, {0, 255, 0}, 150},     {PXB_RGB24, 1, {0, 0, 255}, 76},
        {PXB_RGB24, 1, {255, 0, 0}, 27},      {PXB_RGB24, 1, {255, 255, 255}, 255},
        {PXB_RGB32, 1, {10, 20, 30, 40}, 40}, {PXB_RGB32, 2, {10, 20, 30, 40}, 30},
        {PXB_RGB32, 3, {10, 20, 30, 40}, 20}, {PXB_RGB32, 4, {10, 20, 30, 40}, 10},
    };
    for (auto c : kCases) {
        Byte out = 0;
        ImageBuffer dst = {&out, 8, 1, 1, 1, PXB_RGB8, nullptr};
        const ImageBuffer src = {c.pixel, 0, 4, 1, 1, c.format, nullptr};
        EXPECT_EQ(PxbChannelGet(&dst, &src, c.channel), PXB_SUCCESS);
        EXPECT_EQ(out, c.wanted) << "format " << c.format << ", channel " << c.channel;
    }
}

// Any widths and strides, with the last byte of source and destination before a guard page. Where
// the widths differ, the destination advances by its stride and the difference.
TEST(ChannelGet, TakesBytesOfRgb) {
    const GuardedMemory in, out;
    const std::vector<Byte> noise = Noise(GuardedMemory::kArea, 3);
    std::memcpy(in.First(), noise.data(), noise.size());
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        for (int width = 0; width <= 70; ++width)
            for (int number = 0; number < 40; ++number) {
                const bool is_rgb24 = number % 5 == 4;
                const int channel = is_rgb24 ? 1 : 1 + number % 5, height = number % 4;
                const int bytes = is_rgb24 ? 3 : 4, extra = number % 3;  // of the destination
                const int src_stride = bytes * width + number % 7;
                const int dst_stride = width + extra + number % 2, step = dst_stride - extra;
                const bool turned = number % 3 == 2 && height > 0;
                const int last = std::max(height - 1, 0);
                Byte* const src_first = in.FirstEnd() - (last * src_stride + bytes * width);
                Byte* const dst_first = out.FirstEnd() - (last * step + width);
                ImageBuffer dst = {dst_first, 8, dst_stride, width + extra, 4, 0, nullptr};
                ImageBuffer src = {src_first,        0,      src_stride, width, height,
                                   is_rgb24 ? 1 : 2, nullptr};
                if (turned) src.data += last * src_stride, src.stride = -src_stride;

                std::memset(out.First(), 77, GuardedMemory::kArea);
                std::vector<Byte> expected(GuardedMemory::kArea, 77);
                Byte* to = expected.data() + (dst_first - out.First());
                for (int y = 0; y < height; ++y, to += step)
                    for (int x = 0; x < width; ++x) {
                        const Byte* const p = src.data + y * src.stride + bytes * x;
                        const int grey = (38656 * p[1] + 19712 * p[2] + 7168 * p[0]) / 65536;
                        to[x] = static_cast<Byte>(is_rgb24 ? grey : p[4 - channel]);
                    }
                ASSERT_EQ(PxbChannelGet(&dst, &src, channel), PXB_SUCCESS);
                ASSERT_EQ(std::memcmp(out.First(), expected.data(), expected.size()), 0)
                    << variant.name << ", width " << width << ", number " << number;
            }
    }
}

TEST(ChannelGet, ImagesWithoutPixelsGiveNone) {
    std::vector<Byte> pixels = Noise(64, 7), out(64, 77);
    ImageBuffer dst = {out.data(), 8, 4, 4, 4, 0, nullptr};
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        for (const PixelFormat format : {PXB_RGB24, PXB_RGB32})
            for (const Size size : {Size{0, 4}, Size{4, 0}, Size{-4, 4}, Size{4, -4},
                                    Size{INT32_MIN, 4}, Size{4, INT32_MIN}}) {
                ImageBuffer src = Describe(format, {4, 4}, 0);
                src.data = pixels.data(), src.width = size.width, src.height = size.height;
                EXPECT_EQ(PxbChannelGet(&dst, &src, 1), PXB_SUCCESS);
                EXPECT_EQ(out, std::vector<Byte>(64, 77)) << size.width << " x " << size.height;
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
    std::vector<Byte> bytes(256, 77);
    for (int y = 0; y < even.height; ++y)
        std::copy_n(planes.begin() + y * even.width, even.width, bytes.begin() + y * dst_stride);
    return bytes;
}

TEST(ChannelGet, LumaOfEveryFormatThatConverts) {
    const std::vector<Byte> pixels = Noise(512, 5);
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        for (const PixelFormat format : {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420})
            for (const Size size : {Size{3, 3}, Size{8, 4}, Size{7, 6}, Size{1, 1}, Size{0, 3}}) {
                SCOPED_TRACE(testing::Message() << variant.name << ", format " << format << ", "
                                                << size.width << " x " << size.height);
                ImageBuffer src = Describe(format, size, 3);
                std::vector<Byte> bytes = pixels, out(256, 77);
                src.data = bytes.data();
                ImageBuffer dst = {out.data(), 8, 11, 8, 8, 0, nullptr};
                const int live = LiveAllocations();
                const int32_t result = PxbChannelGet(&dst, &src, 5);
                const int leaked = LiveAllocations() - live;
                EXPECT_EQ(result, PXB_SUCCESS);
                EXPECT_EQ(leaked, 0);
                EXPECT_EQ(out, Luma(src, 11));
            }
    }
}

TEST(ChannelGet, LumaWithoutMemoryIsSilent) {
    std::vector<Byte> pixels = Noise(64, 6), out(64, 77);
    ImageBuffer dst = {out.data(), 8, 4, 4, 4, 0, nullptr};
    ImageBuffer src = {pixels.data(), 0, 16, 4, 4, PXB_RGB32, nullptr};
    const int live = LiveAllocations();
    int32_t result;
    {
        const FailingAllocation failing(0);
        result = PxbChannelGet(&dst, &src, 5);
    }
    EXPECT_EQ(result, PXB_SUCCESS);
    for (const Size size : {Size{1 << 17, 1 << 17}, Size{-4, 4}, Size{4, -4}, Size{-4, -4}}) {
        src.width = size.width, src.height = size.height;
        EXPECT_EQ(PxbChannelGet(&dst, &src, 5), PXB_SUCCESS);
    }
    EXPECT_EQ(LiveAllocations(), live);
    EXPECT_EQ(out, std::vector<Byte>(64, 77));
}

}  // namespace
}  // namespace pxb::test
