// usage: processors_test plain|mmx|sse2
//
// Runs every conversion of the shared library and compares all bytes, also those around the images,
// with arithmetic written apart from it. The argument says what the library should make of the
// processor at hand: without SIMD, with MMX, or with SSE2 or more.
#include <cstdio>
#include <map>
#include <string>

#include "convert/conversion_trial.h"
#include "support/old_caller.h"

namespace {

std::int32_t ConvertAsOldProgram(ImageBuffer* dst, const ImageBuffer* src) {
    pxb::test::old_stack = (pxb::test::old_stack + 4) % 16;
    const auto [result, fault] = pxb::test::CallAsOldProgram(PxbColorSpaceConv, dst, src);
    return fault.empty() ? result : -1;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace pxb::test;
    const std::map<std::string, Processor> known = {
        {"plain", Processor::kPlain}, {"mmx", Processor::kMmx}, {"sse2", Processor::kSse2}};
    const auto expected = known.find(argc == 2 ? argv[1] : "");
    if (expected == known.end()) {
        std::fputs("usage: processors_test plain|mmx|sse2\n", stderr);
        return 2;
    }
    const std::vector<int> widths = {1, 2, 16, 34, 35, 50, 64, 66, 96, 131};
    ConversionTrial trial;
    int failures = 0;
    for (const FormatPair pair : PairsThatConvert()) {
        const testing::AssertionResult result =
            trial.Run(pair, widths, ReferenceFor(expected->second), ConvertAsOldProgram);
        if (result) continue;
        ++failures;
        std::printf("%s: %s\n", NameOf(pair).c_str(), result.message());
    }
    return failures != 0;
}
