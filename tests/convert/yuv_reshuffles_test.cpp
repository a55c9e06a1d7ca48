#include "convert/yuv_reshuffles.h"

#include <gtest/gtest.h>

#include "convert/kernel_list.h"

namespace pxb::test {
namespace {

TEST(YuvReshuffles, EveryKernelGivesTheBytesOfTheReference) {
    std::vector<ListedKernel> kernels;
    const auto list = [&](const char* target, FormatPair formats, Flips flips, auto* kernel) {
        kernels.push_back(List(target, formats, flips, kernel));
    };
#define PXB_LIST(target)                                                                   \
    list(#target, {PXB_I420, PXB_YUY2}, Flips::kDestination, target::ConvertYuv420ToYuy2); \
    list(#target, {PXB_YUY2, PXB_YV12}, Flips::kSource, target::ConvertYuy2ToYuv420);      \
    list(#target, {PXB_YUY2, PXB_YUV422}, Flips::kNeither, target::ConvertYuy2ToYuv422);   \
    list(#target, {PXB_YUV422, PXB_YUY2}, Flips::kNeither, target::ConvertYuv422ToYuy2)
    PXB_LIST(plain);
    PXB_LIST(pairwise);
    PXB_LIST(mmx);
    PXB_LIST(sse2);
    PXB_LIST(avx2);
    PXB_LIST(avx512);
#undef PXB_LIST
    list("any", {PXB_YUY2, PXB_YUY2}, Flips::kSource, CopyYuy2);
    list("any", {PXB_I420, PXB_YV12}, Flips::kNeither, CopyYuv420ToYv12);
    list("any", {PXB_YV12, PXB_I420}, Flips::kNeither, CopyYuv420ToI420);
    ExpectTheReference(kernels);
}

// U = 10 above 13 is 12: means are rounded up. The other way, rows share what they have.
TEST(YuvReshuffles, WorkedValues) {
    std::uint8_t yuy2[] = {1, 10, 2, 20, 3, 13, 4, 20}, i420[6], back[8];
    const ImageBuffer packed = {yuy2, 16, 4, 2, 2, PXB_YUY2, nullptr};
    ImageBuffer planar = {i420, 12, 2, 2, 2, PXB_I420, nullptr}, packed_again = packed;
    packed_again.data = back;
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        ASSERT_EQ(PxbColorSpaceConv(&planar, &packed), PXB_SUCCESS);
        EXPECT_EQ(std::vector<Byte>(i420, i420 + 6), (std::vector<Byte>{1, 2, 3, 4, 12, 20}));
        ASSERT_EQ(PxbColorSpaceConv(&packed_again, &planar), PXB_SUCCESS);
        EXPECT_EQ(std::vector<Byte>(back, back + 8),
                  (std::vector<Byte>{1, 12, 2, 20, 3, 12, 4, 20}));
    }
}

}  // namespace
}  // namespace pxb::test
