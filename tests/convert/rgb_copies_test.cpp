#include "convert/rgb_copies.h"

#include <gtest/gtest.h>

#include "convert/kernel_list.h"

namespace pxb::test {
namespace {

TEST(RgbCopies, EveryKernelGivesTheBytesOfTheReference) {
    std::vector<ListedKernel> kernels;
    const auto list = [&](const char* target, FormatPair formats, RgbCopyKernel* kernel) {
        kernels.push_back(List(target, formats, Flips::kSource, kernel));
    };
#define PXB_LIST(target)                                                \
    list(#target, {PXB_RGB8, PXB_RGB24}, target::ConvertRgb8ToRgb24);   \
    list(#target, {PXB_RGB24, PXB_RGB32}, target::ConvertRgb24ToRgb32); \
    list(#target, {PXB_RGB32, PXB_RGB24}, target::ConvertRgb32ToRgb24)
    PXB_LIST(plain);
    PXB_LIST(pairwise);
    PXB_LIST(mmx);
    PXB_LIST(sse2);
    PXB_LIST(avx2);
    PXB_LIST(avx512);
#undef PXB_LIST
    list("any", {PXB_RGB24, PXB_RGB24}, CopyRgb24);
    list("any", {PXB_RGB32, PXB_RGB32}, CopyRgb32);
    ExpectTheReference(kernels);
}

}  // namespace
}  // namespace pxb::test
