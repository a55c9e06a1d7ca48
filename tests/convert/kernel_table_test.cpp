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
void Sse() {}
void Sse2() {}

// The variant that a pointer must end with, for processors with these of the three bits.
AnyKernel Wanted(const KernelVariants& v, std::uint32_t features) {
    AnyKernel found = v.plain.any;
    for (const auto& [bit, kernel] : {std::pair{kSse2, v.sse2}, {kSse, v.sse}, {kMmx, v.mmx}})
        if ((features & bit) && kernel.any) return kernel.any;
    return found;
}

TEST(KernelTable, EachPointerEndsWithItsBestVariant) {
    for (int bits = 0; bits < 8; ++bits) {
        const std::uint32_t features =
            (bits & 1 ? kMmx : 0u) | (bits & 2 ? kSse : 0u) | (bits & 4 ? kSse2 : 0u);
        for (int exist = 0; exist < 8; ++exist) {
            const KernelVariants some = {KernelPointer(Plain),
                                         KernelPointer(exist & 1 ? Mmx : nullptr),
                                         KernelPointer(exist & 2 ? Sse : nullptr),
                                         KernelPointer(exist & 4 ? Sse2 : nullptr)};
            const KernelRow rows[] = {{some, {}}, {{}, some}, {some, some}};
            KernelEntry entries[3];
            for (int i = 0; i < 3; ++i) {
                entries[i].kernel = rows[i].kernel.plain;
                entries[i].companion = rows[i].companion.plain;
            }
            StoreVariants(entries, rows, 3, features);
            for (int i = 0; i < 3; ++i) {
                EXPECT_EQ(entries[i].kernel.any, Wanted(rows[i].kernel, features)) << bits << exist;
                EXPECT_EQ(entries[i].companion.any, Wanted(rows[i].companion, features));
            }
        }
    }
}

// A required oddity: with SSE but without SSE2 the first entry goes back to its plain kernel.
TEST(KernelTable, FirstEntryGoesBackToPlainWithSse) {
    const KernelRow row = FirstGeneralRow(AnyKernel{Plain}, AnyKernel{Mmx}, AnyKernel{Sse2});
    constexpr std::pair<std::uint32_t, AnyKernel> kCases[] = {
        {0, Plain},    {kMmx, Mmx},          {kSse, Plain},        {kMmx | kSse, Plain},
        {kSse2, Sse2}, {kMmx | kSse2, Sse2}, {kSse | kSse2, Sse2}, {kMmx | kSse | kSse2, Sse2},
    };
    for (const auto& [features, wanted] : kCases) {
        KernelEntry entry = {row.kernel.plain, row.companion.plain};
        StoreVariants(&entry, &row, 1, features);
        EXPECT_EQ(entry.kernel.any, wanted) << std::hex << features;
        EXPECT_EQ(entry.companion.any, nullptr);
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
