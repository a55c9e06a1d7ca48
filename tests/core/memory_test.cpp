// Each allocation of each export fails once: stated results, all or nothing written, nothing leaked.
#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "support/allocations.h"
#include "support/image.h"

namespace pxb::test {
namespace {

// call(number) makes one call while its allocation of that number fails, until none does any more;
// then check(number, failed). Returns how many allocations there are.
int ForEachFailure(const std::function<void()>& call,
                   const std::function<void(int number, bool failed)>& check) {
    for (int number = 0;; ++number) {
        const int live = LiveAllocations();
        bool failed = false;
        {
            const FailingAllocation failing(number);
            call();
            failed = failing.HasFailed();
        }
        check(number, failed);
        EXPECT_EQ(LiveAllocations(), live) << "allocation " << number;
        if (!failed) return number;
    }
}

TEST(Memory, NewSurvivesEachFailure) {
    for (int format = PXB_RGB24; format <= PXB_NV12; ++format) {
        SCOPED_TRACE(kFormatNames[format]);
        ImageBuffer image;
        std::int32_t result = 0;
        const auto call = [&] {
            image = {nullptr, 0, 0, 6, 2, format, nullptr};
            result = PxbNew(&image, 1);
        };
        const auto check = [&](int number, bool) {
            EXPECT_EQ(result, number == 0 ? PXB_FAILURE : PXB_SUCCESS);
            EXPECT_EQ(image.data == nullptr, number == 0);
            EXPECT_EQ(image.alpha == nullptr, number == 1);
            if (image.alpha) {
                EXPECT_EQ(image.alpha->data == nullptr, number == 2);
                EXPECT_EQ(image.alpha->width, 6);
                EXPECT_EQ(image.alpha->stride, 8);
            }
            EXPECT_NE(image.stride, 0);
            PxbDelete(&image);
        };
        EXPECT_EQ(ForEachFailure(call, check), 3);
    }
}

// Whichever allocation fails, the result is 0 and nothing is written, but companions are scaled if
// they can be.
TEST(Memory, ScalingWritesAllOrNothing) {
    for (const int format : {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420, PXB_RGB8})
        for (const std::int32_t mode : {0, 1, 2, 3, 6})
            for (const bool extended : {false, true}) {
                SCOPED_TRACE(testing::Message() << kFormatNames[format] << ", mode " << mode);
                Image src(format, {60, 40}, 1), src_alpha(PXB_RGB8, {60, 40}, 2);
                src.record.alpha = &src_alpha.record;
                std::optional<Image> image, alpha;
                const auto call = [&] {
                    image.emplace(format, Size{34, 22}, 3),
                        alpha.emplace(PXB_RGB8, Size{34, 22}, 4);
                    ImageBuffer* const dst = &image->record;
                    dst->alpha = &alpha->record;
                    EXPECT_EQ(extended ? PxbResizeEx(dst, &src.record, &mode, nullptr, nullptr)
                                       : PxbResize(dst, &src.record, &mode),
                              PXB_SUCCESS);
                };
                const int count = ForEachFailure(call, [&](int, bool failed) {
                    EXPECT_EQ(image->HasChanged() + alpha->HasChanged(), failed ? 1 : 2);
                    image.reset(), alpha.reset();
                });
                EXPECT_GE(count, 2);
            }
}

TEST(Memory, LumaIsAllOrNothing) {
    for (const int format : {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420})
        for (const Size size : {Size{8, 4}, Size{7, 3}}) {
            const Image src(format, size, 1);
            std::optional<Image> image;
            const auto call = [&] {
                image.emplace(PXB_RGB8, Size{8, 4}, 2);
                EXPECT_EQ(PxbChannelGet(&image->record, &src.record, 5), PXB_SUCCESS);
            };
            ForEachFailure(call, [&](int, bool failed) {
                EXPECT_EQ(image->HasChanged(), !failed) << kFormatNames[format];
                image.reset();
            });
        }
}

TEST(Memory, TurnsAndConversionsNeedNone) {
    const Image src(PXB_RGB24, {40, 40}, 1), wide(PXB_RGB24, {40, 40}), planes(PXB_I420, {40, 40});
    ImageBuffer to = wide.record, to_planes = planes.record;
    for (const int angle : {30, 90, 180, 270})
        EXPECT_EQ(ForEachFailure([&] { PxbRotate(&to, &src.record, angle); }, [](int, bool) {}), 0);
    EXPECT_EQ(ForEachFailure([&] { PxbColorSpaceConv(&to_planes, &src.record); }, [](int, bool) {}),
              0);
}

}  // namespace
}  // namespace pxb::test
