#include "convert/kernel_table.h"

#include <bit>

namespace pxb {
namespace {

using KernelRows = std::array<KernelRow, kKernelEntries>;

// Sources come in runs, and destinations in a fixed order within each. Entries that no conversion
// of this library uses are null.
constexpr std::size_t kGeneral = 0, kYuv420 = 4, kYuy2 = 17, kRgb32 = 53, kRgb24 = 62;
enum PlanarDestination : std::size_t {
    k420ToYv12 = 0,
    k420ToI420 = 1,
    k420ToYuy2 = 2,
    k420ToRgb32 = 6,
    k420ToRgb24 = 7
};
enum PackedDestination : std::size_t {
    kTo420 = 0,
    kToYuy2 = 1,
    kToRgb32 = 5,
    kToRgb24 = 6
};

constexpr KernelRows BuildRows() {
    KernelRows rows = {};
    rows[kGeneral] = FirstGeneralRow({}, {}, {});
    rows[kYuv420 + k420ToYv12].kernel = kCopyYuv420ToYv12;
    rows[kYuv420 + k420ToI420].kernel = kCopyYuv420ToI420;
    rows[kYuv420 + k420ToYuy2].kernel = kYuv420ToYuy2;
    rows[kYuv420 + k420ToRgb32].kernel = kYuv420ToRgb32;
    rows[kYuv420 + k420ToRgb24].kernel = kYuv420ToRgb24;
    rows[kYuy2 + kTo420].kernel = kYuy2ToYuv420;
    rows[kYuy2 + kToYuy2].kernel = kCopyYuy2;
    rows[kYuy2 + kToRgb32].kernel = kYuy2ToRgb32;
    rows[kYuy2 + kToRgb24].kernel = kYuy2ToRgb24;
    rows[kRgb32 + kTo420].kernel = kRgb32ToYuv420;
    rows[kRgb32 + kToYuy2].kernel = kRgb32ToYuy2;
    rows[kRgb32 + kToRgb32].kernel = kCopyRgb32;
    rows[kRgb32 + kToRgb24].kernel = kRgb32ToRgb24;
    rows[kRgb24 + kTo420].kernel = kRgb24ToYuv420;
    rows[kRgb24 + kToYuy2].kernel = kRgb24ToYuy2;
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
