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

// The variants of one kernel; null where there is none.
template <class Kernel>
struct Variants {
    Kernel* plain;
    Kernel* mmx;
    Kernel* sse2;
    Kernel* avx2;

    // For the call at hand. SSE alone never selects anything.
    Kernel* Choose() const {
        const std::uint32_t features = ProcessorFeatures();
        if (sse2 && (features & kSse2)) return avx2 && (WideFeatures() & kAvx2) ? avx2 : sse2;
        if (mmx && (features & kMmx)) return mmx;
        return plain;
    }
};

}  // namespace pxb
