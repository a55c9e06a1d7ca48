#include "convert/kernel_table.h"

#include <gtest/gtest.h>

namespace pxb::test {
namespace {

// The table and the word before the library's own load-time code, which runs later than this.
constinit std::array<KernelEntry, kKernelEntries> initial_table = {};
constinit std::uint32_t initial_features = 0xFFFFFFFF;

__attribute__((constructor(101))) void BeforeLoadTimeCode() {
    initial_table = KernelTable;
    initial_features = ProcessorFeatures();
}

void Plain() {}
void Mmx() {}
void Sse2() {}

// Each pointer ends with the best variant that exists. A required oddity: with SSE but without SSE2
// the first entry goes back to its plain kernel.
TEST(KernelTable, StoresTheVariantsOfAProcessor) {
    const KernelVariants all = {Plain, Mmx, {}, Sse2}, no_mmx = {Plain, {}, {}, Sse2};
    const KernelRow rows[] = {FirstGeneralRow(AnyKernel{Plain}, AnyKernel{Mmx}, AnyKernel{Sse2}),
                              {all, no_mmx},
                              {{}, {Plain, {}, {}, {}}}};
    const struct {
        std::uint32_t features;
        AnyKernel first, all, no_mmx;
    } kCases[] = {
        {0, Plain, Plain, Plain},         {kMmx, Mmx, Mmx, Plain},
        {kSse, Plain, Plain, Plain},      {kMmx | kSse, Plain, Mmx, Plain},
        {kSse2, Sse2, Sse2, Sse2},        {kMmx | kSse2, Sse2, Sse2, Sse2},
        {kSse | kSse2, Sse2, Sse2, Sse2}, {kMmx | kSse | kSse2, Sse2, Sse2, Sse2},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.features);
        KernelEntry entries[3];
        for (int i = 0; i < 3; ++i) {
            entries[i].kernel = rows[i].kernel.plain;
            entries[i].companion = rows[i].companion.plain;
        }
        StoreVariants(entries, rows, 3, c.features);
        EXPECT_EQ(entries[0].kernel.any, c.first);
        EXPECT_EQ(entries[0].companion.any, nullptr);
        EXPECT_EQ(entries[1].kernel.any, c.all);
        EXPECT_EQ(entries[1].companion.any, c.no_mmx);
        EXPECT_EQ(entries[2].kernel.any, nullptr);
        EXPECT_EQ(entries[2].companion.any, Plain);
    }
}

struct Place {
    std::size_t index;
    KernelPointer plain, mmx, sse2;
};

// Without an MMX variant the plain kernel stays.
const Place kPlaces[] = {
    {4, CopyYuv420ToYv12, CopyYuv420ToYv12, CopyYuv420ToYv12},
    {5, CopyYuv420ToI420, CopyYuv420ToI420, CopyYuv420ToI420},
    {6, plain::ConvertYuv420ToYuy2, mmx::ConvertYuv420ToYuy2, sse2::ConvertYuv420ToYuy2},
    {10, plain::ConvertYuv420ToRgb32, mmx::ConvertYuv420ToRgb32, sse2::ConvertYuv420ToRgb32},
    {11, plain::ConvertYuv420ToRgb24, mmx::ConvertYuv420ToRgb24, sse2::ConvertYuv420ToRgb24},
    {17, plain::ConvertYuy2ToYuv420, mmx::ConvertYuy2ToYuv420, sse2::ConvertYuy2ToYuv420},
    {18, CopyYuy2, CopyYuy2, CopyYuy2},
    {22, plain::ConvertYuy2ToRgb32, mmx::ConvertYuy2ToRgb32, sse2::ConvertYuy2ToRgb32},
    {23, ConvertYuy2ToRgb24, ConvertYuy2ToRgb24, ConvertYuy2ToRgb24},
    {53, plain::ConvertRgb32ToYuv420, mmx::ConvertRgb32ToYuv420, sse2::ConvertRgb32ToYuv420},
    {54, plain::ConvertRgb32ToYuy2, mmx::ConvertRgb32ToYuy2, sse2::ConvertRgb32ToYuy2},
    {58, CopyRgb32, CopyRgb32, CopyRgb32},
    {59, plain::ConvertRgb32ToRgb24, mmx::ConvertRgb32ToRgb24, sse2::ConvertRgb32ToRgb24},
    {62, plain::ConvertRgb24ToYuv420, mmx::ConvertRgb24ToYuv420, sse2::ConvertRgb24ToYuv420},
    {63, plain::ConvertRgb24ToYuy2, plain::ConvertRgb24ToYuy2, sse2::ConvertRgb24ToYuy2},
    {67, plain::ConvertRgb24ToRgb32, mmx::ConvertRgb24ToRgb32, sse2::ConvertRgb24ToRgb32},
    {68, CopyRgb24, CopyRgb24, CopyRgb24},
};

void ExpectTable(const char* when, KernelPointer Place::*variant) {
    std::array<AnyKernel, kKernelEntries> wanted = {};
    for (const Place& place : kPlaces) wanted[place.index] = (place.*variant).any;
    for (std::size_t i = 0; i < kKernelEntries; ++i) {
        EXPECT_EQ(KernelTable[i].kernel.any, wanted[i]) << when << ", entry " << i;
        EXPECT_EQ(KernelTable[i].companion.any, nullptr) << when << ", entry " << i;
    }
}

TEST(KernelTable, HoldsTheNamedKernelsInTheirPlaces) {
    EXPECT_EQ(initial_features, 0u);
    const auto filled_at_load = KernelTable;
    if (ProcessorFeatures() & kSse2) ExpectTable("after loading", &Place::sse2);
    KernelTable = initial_table;
    ExpectTable("before loading", &Place::plain);
    FillKernelTable(0);
    ExpectTable("without SIMD", &Place::plain);
    FillKernelTable(kMmx);
    ExpectTable("with MMX", &Place::mmx);
    FillKernelTable(kMmx | kSse);
    ExpectTable("with MMX and SSE", &Place::mmx);
    FillKernelTable(kSse2);
    ExpectTable("with SSE2", &Place::sse2);
    KernelTable = filled_at_load;
}

}  // namespace
}  // namespace pxb::test
