// What the processor offers, and the choice between the variants of a kernel.
#pragma once
#include <cstdint>

namespace pxb {

// The processor's own bit positions in EDX of CPUID leaf 1 and, the three marked *, 0x80000001.
enum ProcessorFeature : std::uint32_t {
    kTimeStampCounter = 1u << 4,
    kConditionalMove = 1u << 15,
    kAmdMmxExtensions = 1u << 22,  // *
    kMmx = 1u << 23,
    kFxsave = 1u << 24,
    kSse = 1u << 25,
    kSse2 = 1u << 26,
    kHyperThreading = 1u << 28,
    k3dNowExtensions = 1u << 30,  // *
    k3dNow = 1u << 31,            // *
};

// Bits of the wide word. A bit says that the processor has the instructions and the system saves
// their registers. Wide variants stand behind the SSE2 bit and give the same bytes as SSE2.
enum WideFeature : std::uint32_t {
    kAvx2 = 1u << 0,
    kAvx512 = 1u << 1,  // F, BW and VL, with VBMI (byte permutations) and VNNI (dot products)
};

struct Processor {
    std::uint32_t features;  // of ProcessorFeature
    std::uint32_t wide;      // of WideFeature
};

// Asks the processor, under a guard: all bits are 0 if the question itself faults.
Processor ProbeProcessor();

// The word that was found while the library was loaded; 0 before that.
std::uint32_t ProcessorFeatures();
std::uint32_t WideFeatures();

// The load-time initialisation writes the words with this, and so do tests that force a variant.
void SetProcessor(Processor replacement);

// The variants of one kernel; null where there is none. A single kernel is the plain one.
template <class Kernel>
struct Variants {
    Kernel* plain;
    Kernel* mmx = nullptr;
    Kernel* sse2 = nullptr;
    Kernel* avx2 = nullptr;
    Kernel* avx512 = nullptr;

    // For the call at hand. SSE alone never selects anything.
    Kernel* Choose() const {
        const std::uint32_t features = ProcessorFeatures();
        if (sse2 && (features & kSse2)) return ChooseWide();
        if (mmx && (features & kMmx)) return mmx;
        return plain;
    }

  private:
    Kernel* ChooseWide() const {
        const std::uint32_t wide = WideFeatures();
        if (avx512 && (wide & kAvx512)) return avx512;
        if (avx2 && (wide & kAvx2)) return avx2;
        return sse2;
    }
};

// The variants of a kernel of this name.
#define PXB_VARIANTS_FROM_MMX(kernel) \
    { plain::kernel, mmx::kernel, sse2::kernel, avx2::kernel, avx512::kernel }
#define PXB_VARIANTS_FROM_SSE2(kernel) \
    { plain::kernel, nullptr, sse2::kernel, avx2::kernel, avx512::kernel }

}  // namespace pxb
