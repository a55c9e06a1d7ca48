// The variants that conversions may choose, and how to force one.
#pragma once
#include <vector>

#include "convert/processor.h"
#include "reference.h"

namespace pxb::test {

struct Variant {
    const char* name;
    pxb::Processor words;
    ::Processor arithmetic;  // what the reference has to compute
};

inline constexpr std::uint32_t kAllSse = kMmx | kSse | kSse2;
inline constexpr Variant kAllVariants[] = {
    {"plain", {0, 0}, ::Processor::kPlain},
    {"mmx", {kMmx, 0}, ::Processor::kMmx},
    {"sse2", {kAllSse, 0}, ::Processor::kSse2},
    {"avx2", {kAllSse, kAvx2}, ::Processor::kSse2},
    {"avx512", {kAllSse, kAvx2 | kAvx512}, ::Processor::kSse2},
};

inline bool IsRunnable(const Variant& variant) {
    const pxb::Processor found = ProbeProcessor();
    return !(variant.words.features & ~found.features) && !(variant.words.wide & ~found.wide);
}

inline std::vector<Variant> RunnableVariants() {
    std::vector<Variant> variants(std::begin(kAllVariants), std::end(kAllVariants));
    std::erase_if(variants, [](const Variant& variant) { return !IsRunnable(variant); });
    return variants;
}

class ForcedProcessor {
  public:
    explicit ForcedProcessor(pxb::Processor words) : before_{ProcessorFeatures(), WideFeatures()} {
        SetProcessor(words);
    }
    ~ForcedProcessor() { SetProcessor(before_); }
    ForcedProcessor(const ForcedProcessor&) = delete;
    ForcedProcessor& operator=(const ForcedProcessor&) = delete;

  private:
    pxb::Processor before_;
};

}  // namespace pxb::test
