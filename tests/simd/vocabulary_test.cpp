#include "simd/vocabulary.h"

#include <gtest/gtest.h>

#include "support/noise.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

void Differs(const char* name, int pixels) {
    ADD_FAILURE() << name << " of " << pixels << " pixels";
}

TEST(Vocabulary, EveryOperationOfEveryClassDoesWhatPlainIntegersDo) {
    constexpr struct {
        const char* name;
        decltype(&sse2::CheckVocabulary) check;
    } kTargets[] = {
#define PXB_ENTRY(target) {#target, target::CheckVocabulary},
        PXB_SIMD_TARGETS(PXB_ENTRY)
#undef PXB_ENTRY
    };
    for (const Variant& variant : RunnableVariants())
        for (const auto& [name, check] : kTargets)
            for (std::uint32_t seed = 0; seed < 50 && std::string(name) == variant.name; ++seed) {
                SCOPED_TRACE(testing::Message() << name << ", seed " << seed);
                check(Noise(4096, seed).data(), Differs);
            }
}

}  // namespace
}  // namespace pxb::test
