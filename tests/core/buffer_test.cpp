#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/allocations.h"
#include "support/image.h"

namespace pxb::test {
namespace {

ImageBuffer Request(int format, int width, int height) {
    return {nullptr, 0, 0, width, height, format, nullptr};
}

// The bits, the stride, the width and the height.
std::vector<int> ShapeOf(const ImageBuffer& image) {
    return {image.bitsPerPixel, image.stride, image.width, image.height};
}

TEST(New, TakesAndRefusesSizes) {
    constexpr int kMin = INT32_MIN, kMax = INT32_MAX;
    const struct {
        int format, width, height;
        int32_t wanted;
        std::vector<int> afterwards;  // stride, width and height
    } kCases[] = {
        {PXB_RGB24, 0, 3, 0, {0, 0, 3}},
        {PXB_I420, 1, 1, 0, {2, 2, 2}},
        {PXB_RGB24, -5, 3, 3, {-8, -5, 3}},
        {PXB_RGB24, 5, -3, 3, {16, 5, -3}},
        {PXB_RGB24, -5, -3, 0, {-8, -5, -3}},  // a positive number of bytes, but no pixels
        {PXB_I420, -5, 3, 3, {-4, -4, 4}},
        {PXB_I420, -5, -3, 0, {-4, -4, -2}},
        {PXB_YUY2, -1, 3, 0, {0, 0, 3}},
        {PXB_AYUV32, 32767, 16384, 0, {131068, 32767, 16384}},
        {PXB_AYUV32, 32768, 16383, 0, {131072, 32768, 16383}},
        {PXB_AYUV32, 32768, 16384, 3, {131072, 32768, 16384}},  // 2^31 bytes
        {PXB_AYUV32, 65536, 65536, 3, {262144, 65536, 65536}},  // 2^34: 0 in 32 bits
        {PXB_AYUV32, 1 << 30, 1, 3, {0, 1 << 30, 1}},
        {PXB_AYUV32, kMax, kMax, 3, {-4, kMax, kMax}},
        {PXB_AYUV32, kMin, kMin, 3, {4, kMin, kMin}},
        {PXB_AYUV32, kMin, 1, 3, {4, kMin, 1}},
        {PXB_NV12, 32768, 43690, 0, {32768, 32768, 43690}},
        {PXB_NV12, 65535, 21845, 3, {65536, 65536, 21846}},
        {PXB_NV12, kMax, 1, 3, {kMin, kMin, 2}},
        {PXB_NV12, kMax, 0, 0, {kMin, kMin, 0}},
        {PXB_NV12, kMax, kMax, 3, {kMin, kMin, kMin}},
        {PXB_NV12, kMin, kMin, 3, {kMin + 2, kMin + 2, kMin + 2}},
        {PXB_RGB24, 715827883, 1, 3, {kMin + 4, 715827883, 1}},
        {PXB_RGB8, kMax, 1, 3, {kMin, kMax, 1}},
        {PXB_YUY2, kMax, 1, 3, {0, kMin, 1}},
        {PXB_YUV422, 32768, 32768, 3, {65536, 32768, 32768}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message()
                     << "format " << c.format << ", " << c.width << " x " << c.height);
        const int live = LiveAllocations();
        ImageBuffer image = Request(c.format, c.width, c.height);
        const int32_t result = PxbNew(&image, 0);
        const bool large = c.width > 32000 && c.height > 8000;
        // 32-bit programs may find no room for the largest.
        const bool no_room = sizeof(void*) == 4 && large && result == PXB_FAILURE;
        EXPECT_EQ(result, no_room ? PXB_FAILURE : c.wanted);
        EXPECT_EQ(image.data != nullptr, result == PXB_SUCCESS);
        EXPECT_EQ((std::vector{image.stride, image.width, image.height}), c.afterwards);
        PxbDelete(&image);
        EXPECT_EQ(LiveAllocations(), live);
    }
}

TEST(New, RefusesUnknownFormatsByWhatDataHolds) {
    for (const int format : {0, 10, -1, INT32_MIN, INT32_MAX}) {
        SCOPED_TRACE(format);
        ImageBuffer image = Request(format, 6, 2);
        EXPECT_EQ(PxbNew(&image, 0), PXB_FAILURE);
        EXPECT_EQ(ShapeOf(image), (std::vector{0, 0, 6, 2}));

        Byte byte = 77;
        image.data = &byte;
        EXPECT_EQ(PxbNew(&image, 1), PXB_BAD_ARGUMENT);
        EXPECT_EQ(image.data, &byte);
        EXPECT_EQ(byte, 77);
        ASSERT_TRUE(image.alpha && image.alpha->data);
        EXPECT_EQ(ShapeOf(*image.alpha), (std::vector{8, 8, 6, 2}));
        image.data = nullptr;
        PxbDelete(&image);
    }
}

TEST(New, LeavesForeignCompanionsAlone) {
    Byte bytes[4] = {};
    ImageBuffer other = {bytes, 8, 2, 2, 2, PXB_RGB8, nullptr}, image = Request(PXB_RGB8, 2, 2);
    image.alpha = &other;
    EXPECT_EQ(PxbNew(&image, 0), PXB_SUCCESS);
    EXPECT_EQ(image.alpha, &other);
    image.alpha = nullptr;
    PxbDelete(&image);

    EXPECT_EQ(PxbNew(&image, 1), PXB_SUCCESS);
    image.alpha->alpha = &other;  // a companion's own one is not followed
    PxbDelete(&image);
    EXPECT_EQ(other.data, bytes);
}

}  // namespace
}  // namespace pxb::test
