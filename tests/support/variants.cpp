#include "support/variants.h"

namespace pxb::test {
namespace {

constexpr std::uint32_t kAllSse = kMmx | kSse | kSse2;
constexpr Variant kAll[] = {
    {"plain", {0, 0}, ::Processor::kPlain},
    {"mmx", {kMmx, 0}, ::Processor::kMmx},
    {"sse2", {kAllSse, 0}, ::Processor::kSse2},
    {"avx2", {kAllSse, kAvx2}, ::Processor::kSse2},
    {"avx512", {kAllSse, kAvx2 | kAvx512}, ::Processor::kSse2},
};

bool IsRunnable(const Variant& variant) {
    const pxb::Processor found = ProbeProcessor();
    return !(variant.words.features & ~found.features) && !(variant.words.wide & ~found.wide);
}

}  // namespace

std::vector<Variant> RunnableVariants() {
    std::vector<Variant> variants;
    for (const Variant& variant : kAll)
        if (IsRunnable(variant)) variants.push_back(variant);
    return variants;
}

std::vector<const char*> MissingVariants() {
    std::vector<const char*> names;
    for (const Variant& variant : kAll)
        if (!IsRunnable(variant)) names.push_back(variant.name);
    return names;
}

}  // namespace pxb::test
