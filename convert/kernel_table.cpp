#include "convert/kernel_table.h"

#include <bit>

namespace pxb {
namespace {

using KernelRows = std::array<KernelRow, kKernelEntries>;

// Sources come in runs, and destinations in a fixed order within each. Entries that no conversion of
// this library uses are null.
constexpr std::size_t kGeneral = 0, kYuv420 = 4, kYuy2 = 17, kRgb32 = 53, kRgb24 = 62;
constexpr std::size_t kYuv420ToRgb32Entry = kYuv420 + 6, kYuv420ToRgb24Entry = kYuv420 + 7;
constexpr std::size_t kToRgb32 = 5, kToRgb24 = 6;  // within the runs of packed sources

constexpr KernelRows BuildRows() {
    KernelRows rows = {};
    rows[kGeneral] = FirstGeneralRow({}, {}, {});
    rows[kYuv420ToRgb32Entry].kernel = kYuv420ToRgb32;
    rows[kYuv420ToRgb24Entry].kernel = kYuv420ToRgb24;
    rows[kYuy2 + kToRgb32].kernel = kYuy2ToRgb32;
    rows[kYuy2 + kToRgb24].kernel = kYuy2ToRgb24;
    rows[kRgb32 + kToRgb32].kernel = kCopyRgb32;
    rows[kRgb32 + kToRgb24].kernel = kRgb32ToRgb24;
    rows[kRgb24 + kToRgb32].kernel = kRgb24ToRgb32;
    rows[kRgb24 + kToRgb24].kernel = kCopyRgb24;
    return rows;
}

constexpr KernelRows kRows = BuildRows();

constexpr std::array<KernelEntry, kKernelEntries> PlainEntries() {
    std::array<KernelEntry, kKernelEntries> entries = {};
    for (std::size_t i = 0; i < kKernelEntries; ++i) {
        entries[i].kernel = kRows[i].kernel.plain;
        entries[i].companion = kRows[i].companion.plain;
    }
    return entries;
}

void Store(KernelPointer& entry, const KernelPointer& variant) {
    if (std::bit_cast<AnyKernel>(variant)) entry = variant;
}

void StoreVariants(KernelPointer& entry, const KernelVariants& variants, std::uint32_t features) {
    if (features & kMmx) Store(entry, variants.mmx);
    if (features & kSse) Store(entry, variants.sse);
    if (features & kSse2) Store(entry, variants.sse2);
}

}  // namespace

constinit std::array<KernelEntry, kKernelEntries> KernelTable = PlainEntries();

void StoreVariants(KernelEntry* entries, const KernelRow* rows, std::size_t count,
                   std::uint32_t features) {
    for (std::size_t i = 0; i < count; ++i) {
        StoreVariants(entries[i].kernel, rows[i].kernel, features);
        StoreVariants(entries[i].companion, rows[i].companion, features);
    }
}

void FillKernelTable(std::uint32_t features) {
    StoreVariants(KernelTable.data(), kRows.data(), kKernelEntries, features);
}

}  // namespace pxb
