// Both mirrors: by hand, every rectangle of small images, and large images.
#include <gtest/gtest.h>

#include <cstring>

#include "fuzz/mirrors.h"
#include "support/effort.h"

namespace pxb::test {
namespace {

TEST(Flip, MirrorsAsWorkedOutByHand) {
    constexpr struct {
        int format;
        Size size;
        const char *before, *left_to_right, *upside_down;
    } kCases[] = {
        {PXB_RGB24, {3, 1}, "bgrBGRxyz", "xyzBGRbgr", "bgrBGRxyz"},
        {PXB_RGB32, {1, 3}, "abcdefghijkl", "abcdefghijkl", "ijklefghabcd"},
        {PXB_YUY2, {4, 1}, "aubvcxdy", "dxcybuav", "aubvcxdy"},
        {PXB_RGB8, {3, 2}, "abcdef", "abcdef", "defabc"},
        {PXB_YUV422, {4, 2}, "abcdefgh", "abcdefgh", "efghabcd"},
        {PXB_I420, {4, 2}, "abcdefghuvUV", "dcbahgfevuVU", "efghabcduvUV"},
        {PXB_YV12, {2, 4}, "abcdefghuvUV", "badcfehguvUV", "ghefcdabvuVU"},
    };
    for (const auto& c : kCases)
        for (const Flip flip : {PxbFliphorizontal, PxbFlipvertical}) {
            std::string bytes = c.before;
            ImageBuffer image = Describe(c.format, c.size);
            image.data = reinterpret_cast<Byte*>(bytes.data());
            flip(&image, nullptr);
            EXPECT_EQ(bytes, flip == PxbFliphorizontal ? c.left_to_right : c.upside_down)
                << kFormatNames[c.format];
        }
}

TEST(Flip, MirrorsEveryRectangleOfSmallImages) {
    int number = 0;
    for (int format = PXB_RGB24; format <= PXB_YUV422; ++format)
        for (const Size size : {Size{1, 1}, {2, 3}, {3, 2}, {5, 4}, {6, 5}, {7, 2}, {9, 3}}) {
            if (!kThorough && size.width > 5) continue;
            const ImageBuffer image = Describe(format, size, size.width % 3 + size.height % 2);
            for (Rect r = {}; r.left < size.width; ++r.left)
                for (r.right = r.left + 1; r.right <= size.width; ++r.right)
                    for (r.top = 0; r.top < size.height; ++r.top)
                        for (r.bottom = r.top + 1; r.bottom <= size.height; ++r.bottom)
                            for (const Flip flip : {PxbFliphorizontal, PxbFlipvertical}) {
                                Stage stage(++number % 2 ? Placement::kFront : Placement::kBack, 1);
                                ASSERT_NO_THROW(CheckMirror(stage, flip, image, &r));
                            }
        }
}

// Large enough for rows to be fetched ahead.
TEST(Flip, MirrorsLargeImages) {
    constexpr Size kSize = {701, 521};
    const Image before(PXB_RGB24, kSize, 1), expected(PXB_RGB24, kSize, 1);
    for (int y = 0; y < kSize.height; ++y)
        for (int x = 0; x < kSize.width; ++x)
            std::memcpy(expected.At(kSize.width - 1 - x, y), before.At(x, y), 3);
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        Image image(PXB_RGB24, kSize, 1);
        ASSERT_EQ(PxbFliphorizontal(&image.record, nullptr), PXB_SUCCESS);
        ASSERT_TRUE(image == expected) << variant.name;
    }
}

}  // namespace
}  // namespace pxb::test
