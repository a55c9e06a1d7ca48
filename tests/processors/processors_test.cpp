// usage: processors_test plain|mmx|sse2
//
// Runs every conversion of the shared library and compares all bytes, also those around the images,
// with arithmetic written apart from it. The argument says what the library should make of the
// processor at hand: without SIMD, with MMX, or with SSE2 or more.
#include <cstdio>
#include <map>
#include <string>

#include "convert/conversion_trial.h"

namespace {

#if defined(__i386__) && !defined(__SANITIZE_ADDRESS__)  // which itself needs an aligned stack

using Conversion = int32_t(PXB_CALL*)(ImageBuffer*, const ImageBuffer*);

// The stack lies `misalignment` bytes off a multiple of 16 when the call instruction runs.
__attribute__((naked, noinline)) int32_t CallWithStack(int /*misalignment*/,
                                                       Conversion /*function*/,
                                                       ImageBuffer* /*dst*/,
                                                       const ImageBuffer* /*src*/) {
    __asm__(
        "pushl %ebp\n movl %esp, %ebp\n"
        "andl $-16, %esp\n subl $24, %esp\n addl 8(%ebp), %esp\n"
        "pushl 20(%ebp)\n pushl 16(%ebp)\n call *12(%ebp)\n"
        "movl %ebp, %esp\n popl %ebp\n ret\n");
}

// As old programs call: they keep the stack at 4 bytes only, and compute with x87 registers, which
// share their place with those of MMX and must be left empty; otherwise answers -1.
int32_t ConvertAsOldCaller(ImageBuffer* dst, const ImageBuffer* src) {
    static int misalignment = 0;
    misalignment = (misalignment + 4) % 16;
    const int32_t result = CallWithStack(misalignment, PxbColorSpaceConv, dst, src);
    struct {
        std::uint32_t control, status, tags, others[4];
    } x87;
    __asm__ volatile("fnstenv %0\n fldenv %0" : "+m"(x87));
    constexpr std::uint32_t kAllEmpty = 0xFFFF;  // two bits a register
    return (x87.tags & kAllEmpty) == kAllEmpty ? result : -1;
}

#else

constexpr auto ConvertAsOldCaller = PxbColorSpaceConv;

#endif

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
            trial.Run(pair, widths, ReferenceFor(expected->second), ConvertAsOldCaller);
        if (result) continue;
        ++failures;
        std::printf("%s: %s\n", NameOf(pair).c_str(), result.message());
    }
    return failures != 0;
}
