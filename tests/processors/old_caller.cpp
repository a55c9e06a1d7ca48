#include "old_caller.h"

#if defined(__i386__) && !defined(__SANITIZE_ADDRESS__)  // which itself needs an aligned stack

#include <cstdint>

namespace {

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

}  // namespace

CallOutcome ConvertAsOldCaller(ImageBuffer* dst, const ImageBuffer* src, int misalignment) {
    const int32_t result = CallWithStack(misalignment, PxbColorSpaceConv, dst, src);
    struct {
        std::uint32_t control, status, tags, others[4];
    } x87;
    __asm__ volatile("fnstenv %0\n fldenv %0" : "+m"(x87));
    constexpr std::uint32_t kAllEmpty = 0xFFFF;  // two bits a register
    return {result, (x87.tags & kAllEmpty) == kAllEmpty};
}

#else

CallOutcome ConvertAsOldCaller(ImageBuffer* dst, const ImageBuffer* src, int) {
    return {PxbColorSpaceConv(dst, src), true};
}

#endif
