// KernelTable: the conversion kernels of this processor by source and destination, for operations
// that dispatch through a table. Conversions choose for themselves at each call and do not read it.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

#include "convert/rgb_copies.h"
#include "convert/rgb_to_yuv.h"
#include "convert/yuv_reshuffles.h"
#include "convert/yuv_to_rgb.h"

namespace pxb {

using AnyKernel = void (*)();

// A kernel of any of the signatures, or null. A union, since only unions of function pointers can
// be filled in before any code runs.
union KernelPointer {
    AnyKernel any;
    Planar420ToPackedKernel* yuv420_to_packed;
    PackedToPlanar420Kernel* packed_to_yuv420;
    PackedToPackedKernel* packed;

    constexpr KernelPointer() : any(nullptr) {}
    constexpr KernelPointer(AnyKernel kernel) : any(kernel) {}
    constexpr KernelPointer(Planar420ToPackedKernel* kernel) : yuv420_to_packed(kernel) {}
    constexpr KernelPointer(PackedToPlanar420Kernel* kernel) : packed_to_yuv420(kernel) {}
    constexpr KernelPointer(PackedToPackedKernel* kernel) : packed(kernel) {}
};

struct KernelEntry {
    KernelPointer kernel, companion;
};

constexpr std::size_t kKernelEntries = 88;

extern std::array<KernelEntry, kKernelEntries> KernelTable;

// What one pointer of the table may hold; null: no such variant, the pointer keeps what it has.
struct KernelVariants {
    KernelPointer plain, mmx, sse, sse2;

    constexpr KernelVariants() = default;
    constexpr KernelVariants(KernelPointer plain_, KernelPointer mmx_, KernelPointer sse_,
                             KernelPointer sse2_)
        : plain(plain_), mmx(mmx_), sse(sse_), sse2(sse2_) {}
    template <class Kernel>
    constexpr KernelVariants(const Variants<Kernel>& v)
        : plain(v.plain), mmx(v.mmx), sse2(v.sse2) {}
};

struct KernelRow {
    KernelVariants kernel, companion;
};

// The first entry's SSE variant is required to be its plain kernel: a processor with MMX and SSE
// but without SSE2 ends with the plain one there.
constexpr KernelRow FirstGeneralRow(KernelPointer plain, KernelPointer mmx, KernelPointer sse2) {
    return {{plain, mmx, plain, sse2}, {}};
}

// Stores the variants that `features` allow into `count` entries: MMX, then SSE, then SSE2, each on
// its own, so that later ones overwrite earlier ones.
void StoreVariants(KernelEntry* entries, const KernelRow* rows, std::size_t count,
                   std::uint32_t features);

// The same for KernelTable and its own rows.
void FillKernelTable(std::uint32_t features);

}  // namespace pxb
