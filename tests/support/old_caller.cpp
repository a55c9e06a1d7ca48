#include "support/old_caller.h"

namespace pxb::test {

std::string FaultOfFlagsAndX87() {
    struct {
        std::uint32_t control, status, tags, others[4];
    } x87;
    std::uintptr_t flags;
    __asm__ volatile("fnstenv %0" : "=m"(x87));
#if defined(__x86_64__)  // functions may keep values in the 128 bytes below the stack pointer
    __asm__ volatile("leaq -128(%%rsp), %%rsp\n pushfq\n popq %0\n leaq 128(%%rsp), %%rsp\n cld"
                     : "=r"(flags)
                     :
                     : "cc");
#else
    __asm__ volatile("pushfl\n popl %0\n cld" : "=r"(flags) : : "cc");
#endif
    constexpr std::uint32_t kAllEmpty = 0xFFFF, kDirection = 1 << 10;  // two bits a register
    std::string fault;
    if ((x87.tags & kAllEmpty) != kAllEmpty) fault += " x87 registers are in use";
    if (flags & kDirection) fault += " the direction flag is set";
    x87.tags |= kAllEmpty;
    __asm__ volatile("fldenv %0" : : "m"(x87));
    return fault;
}

#if defined(__i386__)
namespace {

struct Frame {
    const void* function;
    const std::uint32_t* words;
    std::uint32_t count, stack, result, popped, changed;
};

// The words go onto the stack so that it lies where it should when the call instruction
// runs. The function has to keep three registers that are known here: the stack pointer in esi, the
// frame in ebx and edi.
__attribute__((naked, noinline)) void Run(Frame* /*frame*/) {
    __asm__(
        "pushl %ebp\n movl %esp, %ebp\n pushl %ebx\n pushl %esi\n pushl %edi\n"
        "movl 8(%ebp), %ebx\n movl 4(%ebx), %edx\n movl 8(%ebx), %ecx\n movl 12(%ebx), %eax\n"
        "leal (%eax,%ecx,4), %eax\n andl $15, %eax\n"
        "andl $-16, %esp\n subl $16, %esp\n addl %eax, %esp\n"
        "1: decl %ecx\n js 2f\n pushl (%edx,%ecx,4)\n jmp 1b\n"
        "2: movl %esp, %esi\n movl %ebx, %edi\n call *(%ebx)\n"
        "movl 8(%ebp), %ecx\n movl %eax, 16(%ecx)\n"
        "subl %esp, %esi\n negl %esi\n movl %esi, 20(%ecx)\n"
        "xorl %ecx, %ebx\n xorl %ecx, %edi\n orl %edi, %ebx\n movl %ebx, 24(%ecx)\n"
        "leal -12(%ebp), %esp\n popl %edi\n popl %esi\n popl %ebx\n popl %ebp\n ret\n");
}

}  // namespace

OldCall<std::uint32_t> CallWithWords(const void* function, const std::uint32_t* words,
                                     std::uint32_t count, std::uint32_t popped) {
    Frame frame = {function, words, count, old_stack, 0, 0, 0};
    Run(&frame);
    std::string fault = FaultOfFlagsAndX87();
    if (frame.popped != popped || frame.changed) fault += " esp, ebx, esi or edi are not kept";
    return {frame.result, fault};
}
#endif

}  // namespace pxb::test
