#include "convert/processor.h"

#include <cpuid.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "convert/kernel_table.h"
#include "convert/load_time.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

TEST(Processor, ProbeKeepsTenBits) {
    unsigned a, b, c, d, highest_extended;
    __cpuid(0x80000000, highest_extended, b, c, d);
    __cpuid(1, a, b, c, d);
    const pxb::Processor found = ProbeProcessor();
    EXPECT_EQ(found.features & 0x17808010, d & 0x17808010);
    EXPECT_EQ(found.features & ~0xD7C08010, 0u);
    if (highest_extended != 0x80000000) {
        EXPECT_EQ(found.features & 0xC0400000, 0u);
    }
    const bool avx512 = __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
                        __builtin_cpu_supports("avx512vbmi") &&
                        __builtin_cpu_supports("avx512vnni");
    EXPECT_EQ(found.wide, (__builtin_cpu_supports("avx2") ? kAvx2 : 0u) | (avx512 ? kAvx512 : 0u));
    EXPECT_EQ(ProcessorFeatures(), found.features);
    EXPECT_EQ(WideFeatures(), found.wide);
}

TEST(LoadTime, InitialisesOnce) {
    const auto table = KernelTable;
    const ForcedProcessor known({kTimeStampCounter, 0});
    KernelTable = {};
    EXPECT_EQ(InitialiseOnce(), kTimeStampCounter);
    EXPECT_EQ(ProcessorFeatures(), kTimeStampCounter);
    EXPECT_EQ(WideFeatures(), 0u);
    EXPECT_TRUE(std::none_of(KernelTable.begin(), KernelTable.end(),
                             [](const KernelEntry& entry) { return entry.kernel.any; }));

    SetProcessor({0, 0});
    EXPECT_EQ(InitialiseOnce(), ProbeProcessor().features);
    EXPECT_EQ(ProcessorFeatures(), ProbeProcessor().features);
    EXPECT_TRUE(std::any_of(KernelTable.begin(), KernelTable.end(),
                            [](const KernelEntry& entry) { return entry.kernel.any; }));
    KernelTable = table;
}

template <int number>
int Kernel() {
    return number;
}

TEST(Variants, Choice) {
    constexpr Variants<int()> kExisting[] = {
        {Kernel<0>},
        {Kernel<0>, Kernel<1>},
        {Kernel<0>, nullptr, Kernel<2>},
        {Kernel<0>, Kernel<1>, Kernel<2>},
        {Kernel<0>, nullptr, Kernel<2>, Kernel<3>},
        {Kernel<0>, Kernel<1>, Kernel<2>, Kernel<3>},
        {Kernel<0>, Kernel<1>, Kernel<2>, Kernel<3>, Kernel<4>},
    };
    constexpr struct {
        std::uint32_t features, wide;
        int wanted[7];  // of each row above
    } kCases[] = {
        {0, 0, {0, 0, 0, 0, 0, 0, 0}},
        {kMmx, 0, {0, 1, 0, 1, 0, 1, 1}},
        {kSse2, 0, {0, 0, 2, 2, 2, 2, 2}},
        {kMmx | kSse2, 0, {0, 1, 2, 2, 2, 2, 2}},
        {0, kAvx2 | kAvx512, {0, 0, 0, 0, 0, 0, 0}},  // they stand behind the SSE2 bit
        {kMmx, kAvx2 | kAvx512, {0, 1, 0, 1, 0, 1, 1}},
        {kSse2, kAvx2, {0, 0, 2, 2, 3, 3, 3}},
        {kMmx | kSse2, kAvx2, {0, 1, 2, 2, 3, 3, 3}},
        {kSse2, kAvx512, {0, 0, 2, 2, 2, 2, 4}},
        {kMmx | kSse2, kAvx2 | kAvx512, {0, 1, 2, 2, 3, 3, 4}},
    };
    for (const auto& c : kCases)
        for (const std::uint32_t others : {0u, std::uint32_t{kSse}, 0xD3408010u}) {
            const ForcedProcessor forced({c.features | others, c.wide});
            for (std::size_t i = 0; i < std::size(kExisting); ++i)
                EXPECT_EQ(kExisting[i].Choose()(), c.wanted[i])
                    << std::hex << (c.features | others) << " " << c.wide << ", variants " << i;
        }
}

}  // namespace
}  // namespace pxb::test
