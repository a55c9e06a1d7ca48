// The list of instruction sets, and the choice between the variants of a kernel.
#pragma once
#include <cstdint>

#include "core/byte.h"

// Namespaces within pxb that kernel texts are compiled into, as in cmake/PxbSimd.cmake; "plain" is
// written apart from them. PXB_WIDE_TARGETS are those behind the SSE2 bit, narrowest first, each
// with its bit of the wide word; X(target, bit, kernel).
#define PXB_WIDE_TARGETS(X, kernel) X(avx2, kAvx2, kernel) X(avx512, kAvx512, kernel)
#define PXB_SIMD_TARGETS(X) \
    X(pairwise)             \
    X(mmx)                  \
    X(sse2)                 \
    PXB_WIDE_TARGETS(PXB_TARGET_ALONE, X)
#define PXB_TARGETS(X) X(plain) PXB_SIMD_TARGETS(X)
#define PXB_TARGET_ALONE(target, bit, X) X(target)

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

// The words that were found while the library was loaded; 0 before that.
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
#define PXB_MEMBER(target, bit, kernel) Kernel* target = nullptr;
    PXB_WIDE_TARGETS(PXB_MEMBER, )
#undef PXB_MEMBER

    // For the call at hand. SSE alone never selects anything.
    PXB_INLINE Kernel* Choose() const {
        const std::uint32_t features = ProcessorFeatures();
        if (sse2 && (features & kSse2)) return ChooseWide();
        if (mmx && (features & kMmx)) return mmx;
        return plain;
    }

  private:
    PXB_INLINE Kernel* ChooseWide() const {
        const std::uint32_t wide = WideFeatures();
        Kernel* widest = sse2;
#define PXB_PREFER(target, bit, kernel) \
    if ((target) && (wide & (bit))) widest = (target);
        PXB_WIDE_TARGETS(PXB_PREFER, )
#undef PXB_PREFER
        return widest;
    }
};

// The variants of a kernel of this name.
#define PXB_VARIANTS_FROM_MMX(kernel)                          \
    Variants<decltype(plain::kernel)> {                        \
        plain::kernel, mmx::kernel, PXB_SSE2_AND_WIDER(kernel) \
    }
#define PXB_VARIANTS_FROM_SSE2(kernel)                     \
    Variants<decltype(plain::kernel)> {                    \
        plain::kernel, nullptr, PXB_SSE2_AND_WIDER(kernel) \
    }
// SSE2 has no shuffle of bytes; where all depends on it, the plain kernel does as well.
#define PXB_VARIANTS_FROM_AVX2(kernel)                                           \
    Variants<decltype(plain::kernel)> {                                          \
        plain::kernel, nullptr, plain::kernel PXB_WIDE_TARGETS(PXB_THEN, kernel) \
    }
#define PXB_SSE2_AND_WIDER(kernel) sse2::kernel PXB_WIDE_TARGETS(PXB_THEN, kernel)
#define PXB_THEN(target, bit, kernel) , target::kernel

}  // namespace pxb
