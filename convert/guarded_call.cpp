#include "convert/guarded_call.h"

#if defined(_WIN32)

#include <windows.h>

// GCC has no __try, so the registration record of structured exception handling is built by hand on
// the stack: the previous record, the handler, then our own ebp. Records belong to a thread (fs:0),
// so that other threads never see this one.
namespace {

struct Registration {
    Registration* previous;
    void* handler;
    DWORD ebp;
};

}  // namespace

extern "C" void PxbGuardRecover();

// Continues behind the faulting call, with the stack as PxbGuardCall left it.
extern "C" __attribute__((used))
EXCEPTION_DISPOSITION __cdecl PxbGuardHandler(EXCEPTION_RECORD* record, void* frame,
                                              CONTEXT* context, void*) {
    if (record->ExceptionFlags & (EXCEPTION_UNWINDING | EXCEPTION_EXIT_UNWIND))
        return ExceptionContinueSearch;
    switch (record->ExceptionCode) {
        case EXCEPTION_ILLEGAL_INSTRUCTION:
        case EXCEPTION_PRIV_INSTRUCTION:
        case EXCEPTION_ACCESS_VIOLATION:
            context->Esp = reinterpret_cast<DWORD>(frame);
            context->Ebp = static_cast<Registration*>(frame)->ebp;
            context->Eip = reinterpret_cast<DWORD>(&PxbGuardRecover);
            return ExceptionContinueExecution;
        default:
            return ExceptionContinueSearch;
    }
}

extern "C" __attribute__((naked, used)) int PxbGuardCall(void (*)(void*), void*) {
    __asm__(
        "pushl %ebp\n movl %esp, %ebp\n"
        "pushl %ebx\n pushl %esi\n pushl %edi\n"
        "pushl %ebp\n pushl $_PxbGuardHandler\n pushl %fs:0\n"
        "movl %esp, %fs:0\n"
        "pushl 12(%ebp)\n call *8(%ebp)\n addl $4, %esp\n"
        "movl $1, %eax\n"
        "1: popl %fs:0\n addl $8, %esp\n"
        "popl %edi\n popl %esi\n popl %ebx\n popl %ebp\n ret\n"
        ".globl _PxbGuardRecover\n_PxbGuardRecover:\n xorl %eax, %eax\n jmp 1b\n");
}

bool pxb::RunGuarded(void (*function)(void*), void* argument) {
    return PxbGuardCall(function, argument) != 0;
}

#else

#include <pthread.h>
#include <setjmp.h>
#include <signal.h>

namespace {

sigjmp_buf recovery;
pthread_t guarded_thread;
struct sigaction previous_ill, previous_segv;

void OnFault(int signal, siginfo_t*, void*) {
    if (pthread_equal(pthread_self(), guarded_thread)) siglongjmp(recovery, 1);
    // Another thread faulted meanwhile: with its own handler back, the instruction faults again.
    sigaction(signal, signal == SIGILL ? &previous_ill : &previous_segv, nullptr);
}

}  // namespace

bool pxb::RunGuarded(void (*function)(void*), void* argument) {
    struct sigaction guard = {};
    guard.sa_sigaction = OnFault;
    guard.sa_flags = SA_SIGINFO;
    guarded_thread = pthread_self();
    sigaction(SIGILL, &guard, &previous_ill);
    sigaction(SIGSEGV, &guard, &previous_segv);  // a refused CPUID arrives as SIGSEGV
    const bool clean = sigsetjmp(recovery, 1) == 0;
    if (clean) function(argument);
    sigaction(SIGSEGV, &previous_segv, nullptr);
    sigaction(SIGILL, &previous_ill, nullptr);
    return clean;
}

#endif
