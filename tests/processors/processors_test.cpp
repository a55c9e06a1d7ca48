// usage: processors_test plain|mmx|sse2
//
// Runs every conversion of the shared library and compares all bytes, also those around the images,
// with arithmetic written apart from it. The argument says what the library should make of the
// processor at hand: without SIMD, with MMX, or with SSE2 or more.
#include <cstdio>
#include <map>
#include <string>

#include "convert/format_pairs.h"
#include "reference.h"
#include "support/image.h"
#include "support/old_caller.h"

namespace {

using namespace pxb::test;

bool IsAsTheReference(FormatPair pair, Size size, ::Processor processor) {
    const Image src(pair.from, size, 1), wanted(pair.to, size, 2);
    Image dst(pair.to, size, 2);
    ConvertByReference(wanted.record, src.record, processor);
    old_stack = (old_stack + 4) % 16;
    const auto [result, fault] = CallAsOldProgram(PxbColorSpaceConv, &dst.record, &src.record);
    return result == PXB_SUCCESS && fault.empty() && dst == wanted;
}

}  // namespace

int main(int argc, char** argv) {
    const std::map<std::string, Processor> known = {
        {"plain", Processor::kPlain}, {"mmx", Processor::kMmx}, {"sse2", Processor::kSse2}};
    const auto expected = known.find(argc == 2 ? argv[1] : "");
    if (expected == known.end()) {
        std::fputs("usage: processors_test plain|mmx|sse2\n", stderr);
        return 2;
    }
    int failures = 0;
    for (const FormatPair pair : PairsThatConvert())
        for (const int width : {1, 2, 16, 34, 35, 50, 64, 66, 96, 131})
            for (int height = 1; height <= 5; ++height) {
                if (IsAsTheReference(pair, {width, height}, expected->second)) continue;
                ++failures;
                std::printf("%s: %d x %d\n", NameOf(pair).c_str(), width, height);
            }
    return failures != 0;
}
