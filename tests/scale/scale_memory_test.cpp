// Scaling without memory for its work, and without pixels.
#include <gtest/gtest.h>

#include "support/allocations.h"
#include "support/image.h"

namespace pxb::test {
namespace {

constexpr int kResized[] = {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420, PXB_RGB8};

TEST(Resize, WritesNothingWithoutMemory) {
    for (const int format : kResized)
        for (const std::int32_t mode : {0, 1, 2, 6}) {
            SCOPED_TRACE(testing::Message() << kFormatNames[format] << ", mode " << mode);
            const Image src(format, {60, 40}, 1);
            Image dst(format, {34, 22}, 2);
            const int live = LiveAllocations();
            bool wrote = false;
            for (int number = 0; number < 4 && !wrote; ++number) {
                const FailingAllocation failing(number);
                EXPECT_EQ(PxbResize(&dst.record, &src.record, &mode), PXB_SUCCESS);
                wrote = dst.HasChanged();
                EXPECT_FALSE(wrote && number == 0);
            }
            EXPECT_TRUE(wrote);  // all or nothing, whichever fails
            EXPECT_EQ(LiveAllocations(), live);
        }
}

TEST(Resize, WritesNothingWithoutPixels) {
    for (const int format : kResized)
        for (const int extent : {0, -1, INT32_MIN})
            for (int field = 0; field < 4; ++field) {
                Image src(format, {60, 40}, 1), dst(format, {34, 22}, 2);
                (field < 2 ? src : dst).record.*
                    (field % 2 ? &ImageBuffer::width : &ImageBuffer::height) = extent;
                for (const std::int32_t mode : {0, 1, 2, 3, 6})
                    EXPECT_EQ(PxbResize(&dst.record, &src.record, &mode), PXB_SUCCESS);
                EXPECT_FALSE(dst.HasChanged()) << kFormatNames[format] << ", field " << field;
            }
    for (const int format : {PXB_YV12, PXB_I420}) {
        Image src(format, {60, 40}, 1), dst(format, {34, 22}, 2);
        src.record.stride = -src.record.stride;
        const std::int32_t mode = 1;
        EXPECT_EQ(PxbResize(&dst.record, &src.record, &mode), PXB_SUCCESS);
        EXPECT_FALSE(dst.HasChanged());
    }
}

}  // namespace
}  // namespace pxb::test
