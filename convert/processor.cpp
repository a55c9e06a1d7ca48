#include "convert/processor.h"

#include <cpuid.h>

#include "convert/guarded_call.h"

namespace pxb {
namespace {

constexpr std::uint32_t kLeaf1 =
    kTimeStampCounter | kConditionalMove | kMmx | kFxsave | kSse | kSse2 | kHyperThreading;
constexpr std::uint32_t kExtendedLeaf = kAmdMmxExtensions | k3dNowExtensions | k3dNow;
constexpr std::uint32_t kFirstExtendedLeaf = 0x80000000;

constinit Processor processor = {0, 0};

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

std::uint32_t ProbeWide() {
    constexpr std::uint32_t kOsxsave = 1u << 27, kLeaf7Avx2 = 1u << 5, kXmmAndYmm = 6;
    if (!(Cpuid(1).c & kOsxsave) || Cpuid(0).a < 7) return 0;
    std::uint32_t saved, high;
    __asm__ volatile("xgetbv" : "=a"(saved), "=d"(high) : "c"(0));
    if ((saved & kXmmAndYmm) != kXmmAndYmm) return 0;
    return (Cpuid(7).b & kLeaf7Avx2) ? std::uint32_t{kAvx2} : 0;
}

void Probe(void* result) {
    *static_cast<Processor*>(result) = {ProbeFeatures(), ProbeWide()};
}

}  // namespace

Processor ProbeProcessor() {
    Processor found = {0, 0};
    return RunGuarded(Probe, &found) ? found : Processor{0, 0};
}

std::uint32_t ProcessorFeatures() {
    return processor.features;
}
std::uint32_t WideFeatures() {
    return processor.wide;
}
void SetProcessor(Processor replacement) {
    processor = replacement;
}

}  // namespace pxb
