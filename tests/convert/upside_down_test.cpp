// Kernels take a negative height for an image that is stored bottom row first. That must do what
// they do from the last row on with a negative stride, which the conversions show to be right.
#include <gtest/gtest.h>

#include "convert/rgb_copies.h"
#include "convert/rgb_to_yuv.h"
#include "convert/yuv_reshuffles.h"
#include "convert/yuv_to_rgb.h"
#include "support/noise.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

// Rows drift, the width being odd. Those of 32-bit pixels follow one another without padding.
constexpr int kWidth = 9, kHeight = 5, kStride = 4 * kWidth;

// run(packed, stride, height, other) calls a kernel; `packed` is the image that turns.
template <class Run>
void ExpectTurned(const char* kernels, const Run& run) {
    std::vector<Byte> by_height = Noise(1000, 1), by_stride = by_height;
    run(&by_height[100], kStride, -kHeight, &by_height[500]);
    run(&by_stride[100 + (kHeight - 1) * kStride], -kStride, kHeight, &by_stride[500]);
    EXPECT_EQ(by_height, by_stride) << kernels;
}

TEST(UpsideDown, NegativeHeightActsAsNegativeStride) {
    for (const Variant& variant : RunnableVariants()) {
        SCOPED_TRACE(variant.name);
        const ForcedProcessor forced(variant.words);
        for (const auto& kernel : {kCopyRgb24, kCopyRgb32, kCopyYuy2, kRgb8ToRgb24, kRgb24ToRgb32,
                                   kRgb32ToRgb24, kRgb24ToYuy2, kRgb32ToYuy2, kRgb32ToAyuv32,
                                   kYuy2ToRgb24, kYuy2ToRgb32, kAyuv32ToRgb32})
            ExpectTurned("packed", [&](Byte* packed, int stride, int height, Byte* other) {
                kernel.Choose()(other, kStride, packed, stride, kWidth, height);
            });
        for (const auto& kernel : {kYuv420ToRgb24, kYuv420ToRgb32, kYuv420ToYuy2})
            ExpectTurned("from 4:2:0", [&](Byte* packed, int stride, int height, Byte* other) {
                kernel.Choose()(packed, stride, other, other + 100, other + 200, 20, 10, kWidth,
                                height);
            });
        for (const auto& kernel : {kRgb24ToYuv420, kRgb32ToYuv420, kYuy2ToYuv420})
            ExpectTurned("to 4:2:0", [&](Byte* packed, int stride, int height, Byte* other) {
                kernel.Choose()(other, other + 100, other + 200, 20, 10, packed, stride, kWidth,
                                height);
            });
        ExpectTurned("from NV12", [](Byte* packed, int stride, int height, Byte* other) {
            kNv12ToRgb32.Choose()(packed, stride, other, other + 100, 20, 20, kWidth, height);
        });
        ExpectTurned("to NV12", [](Byte* packed, int stride, int height, Byte* other) {
            kRgb32ToNv12.Choose()(other, other + 100, 20, 20, packed, stride, kWidth, height);
        });
        ExpectTurned("from 4:2:2", [](Byte* packed, int stride, int height, Byte* other) {
            kYuv422ToRgb24.Choose()(kWidth, packed, stride, other, 20, other + 100, other + 200,
                                    kWidth, height);
        });
    }
}

}  // namespace
}  // namespace pxb::test
