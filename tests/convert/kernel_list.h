// Kernels named one by one, those included that conversions do not choose.
#pragma once
#include <algorithm>
#include <string_view>
#include <vector>

#include "convert/conversion_trial.h"
#include "convert/kernel_call.h"
#include "convert/variant.h"

namespace pxb::test {

// The image that a negative height turns upside down.
enum class Flips {
    kSource,
    kDestination,
    kNeither
};

struct ListedKernel {
    const char* target;
    FormatPair formats;
    Flips flips;
    Converter run;
};

template <class Kernel>
ListedKernel List(const char* target, FormatPair formats, Flips flips, Kernel* kernel) {
    return {target, formats, flips, [kernel](ImageBuffer* dst, const ImageBuffer* src) {
                CallKernel(kernel, *dst, *src);
                return PXB_SUCCESS;
            }};
}

// All but the plain kernels compute as a processor with SSE2 does.
inline ::Processor ArithmeticOf(const ListedKernel& kernel) {
    return std::string_view(kernel.target) == "plain" ? ::Processor::kPlain : ::Processor::kSse2;
}

inline bool IsRunnable(const ListedKernel& kernel) {
    const auto missing = MissingVariants();
    return std::none_of(missing.begin(), missing.end(),
                        [&](std::string_view name) { return name == kernel.target; });
}

// Sizes of all tails, both directions, guarded memory.
inline void ExpectTheReference(const std::vector<ListedKernel>& kernels) {
    ConversionTrial trial;
    for (const ListedKernel& kernel : kernels) {
        if (!IsRunnable(kernel)) continue;
        int number = 0;
        for (const int width : {0, 1, 2, 3, 7, 8, 15, 16, 17, 30, 31, 33, 34, 64, 65, 98, 127, 130})
            for (int height = 0; height <= 5; ++height)
                for (const Placement placement : kPlacements)
                    for (const bool upside_down : {false, true}) {
                        ++number;
                        const auto describe = [&](PixelFormat format, Flips which) {
                            return Describe(format, {width, height}, number % 4,
                                            upside_down && kernel.flips == which);
                        };
                        ASSERT_TRUE(trial.Run(describe(kernel.formats.to, Flips::kDestination),
                                              describe(kernel.formats.from, Flips::kSource),
                                              placement, ArithmeticOf(kernel), kernel.run))
                            << kernel.target << ", format " << kernel.formats.from << " to "
                            << kernel.formats.to << ", " << width << " x " << height
                            << (upside_down ? " upside down" : "");
                    }
    }
}

}  // namespace pxb::test
