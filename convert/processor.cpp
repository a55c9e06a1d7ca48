#include "convert/processor.h"

#include <cpuid.h>

#include "convert/guarded_call.h"

namespace pxb {
namespace {

constexpr std::uint32_t kLeaf1 =
    kTimeStampCounter | kConditionalMove | kMmx | kFxsave | kSse | kSse2 | kHyperThreading;
constexpr std::uint32_t kExtendedLeaf = kAmdMmxExtensions | k3dNowExtensions | k3dNow;
constexpr std::uint32_t kFirstExtendedLeaf = 0x80000000;

struct Registers {
    std::uint32_t a, b, c, d;
};

Registers Cpuid(std::uint32_t leaf) {
    Registers r;
    __cpuid_count(leaf, 0, r.a, r.b, r.c, r.d);
    return r;
}

// The equality is required as it stands: any larger maximum skips the extended leaf, so that on
// most processors its three bits stay 0.
std::uint32_t ProbeFeatures() {
    std::uint32_t features = Cpuid(1).d & kLeaf1;
    if (Cpuid(kFirstExtendedLeaf).a == kFirstExtendedLeaf)
        features |= Cpuid(kFirstExtendedLeaf + 1).d & kExtendedLeaf;
    return features;
}

bool HasAll(std::uint32_t word, std::uint32_t bits) {
    return (word & bits) == bits;
}

// Bits of leaf 7, and of the word that says which registers the system saves.
std::uint32_t ProbeWide() {
    constexpr std::uint32_t kOsxsave = 1u << 27;
    constexpr std::uint32_t kB_Avx2 = 1u << 5, kB_FBwVl = 1u << 16 | 1u << 30 | 1u << 31;
    constexpr std::uint32_t kC_VbmiVnni = 1u << 1 | 1u << 11;
    constexpr std::uint32_t kYmm = 0b110, kZmm = 0b11100110;
    if (!(Cpuid(1).c & kOsxsave) || Cpuid(0).a < 7) return 0;
    std::uint32_t saved, high;
    __asm__ volatile("xgetbv" : "=a"(saved), "=d"(high) : "c"(0));
    const Registers leaf7 = Cpuid(7);
    if (!HasAll(saved, kYmm) || !(leaf7.b & kB_Avx2)) return 0;
    const bool avx512 =
        HasAll(saved, kZmm) && HasAll(leaf7.b, kB_FBwVl) && HasAll(leaf7.c, kC_VbmiVnni);
    return avx512 ? kAvx2 | kAvx512 : std::uint32_t{kAvx2};
}

void Probe(void* result) {
    *static_cast<Processor*>(result) = {ProbeFeatures(), ProbeWide()};
}

}  // namespace

Processor ProbeProcessor() {
    Processor found = {0, 0};
    return RunGuarded(Probe, &found) ? found : Processor{0, 0};
}

}  // namespace pxb
