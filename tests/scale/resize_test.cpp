// Scaling, byte for byte beside the reference: long axes.
#include <gtest/gtest.h>

#include "core/float_guard.h"
#include "scaling.h"
#include "support/effort.h"
#include "support/image.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

void ExpectLikeReference(int format, Size from, Size to, std::int32_t mode) {
    const Image src(format, from, 1);
    Image wanted(format, to, 2), dst(format, to, 2);
    {
        const FloatGuard guard;
        ResizeByReference(wanted.record, src.record, &mode);
    }
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        EXPECT_EQ(PxbResize(&dst.record, &src.record, &mode), PXB_SUCCESS);
        EXPECT_TRUE(dst == wanted)
            << variant.name << ", " << kFormatNames[format] << ", mode " << mode << ", "
            << from.width << " x " << from.height << " to " << to.width << " x " << to.height;
    }
}

// Many steps of a position add up their rounding, so that only literal sums give these bytes.
TEST(Resize, KeepsToLiteralPositionsOnLongAxes) {
    constexpr struct {
        Size from, to;
    } kLongAxes[] = {
        {{32767, 2}, {2, 2}},    {{2, 2}, {32767, 2}},    {{2, 32767}, {2, 2}},
        {{2, 2}, {2, 32767}},    {{32767, 1}, {1, 3}},    {{1, 1}, {32767, 2}},
        {{9973, 3}, {6007, 2}},  {{6007, 2}, {9973, 3}},  {{2, 5003}, {3, 9973}},
        {{1920, 13}, {1280, 9}}, {{1280, 9}, {1920, 13}}, {{1919, 18}, {961, 9}},
    };
    for (const auto& [from, to] : kLongAxes)
        for (const int format : {PXB_RGB24, PXB_RGB8, PXB_I420, PXB_YUY2})
            for (const std::int32_t mode : {0, 1, 2, 6}) {
                if (format == PXB_YUY2 && mode != 1) continue;
                if (kThorough || (from.width + to.height + format + mode) % 7 == 0)
                    ExpectLikeReference(format, from, to, mode);
            }
}

}  // namespace
}  // namespace pxb::test
