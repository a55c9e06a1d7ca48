#include "convert/guarded_call.h"

#include <gtest/gtest.h>

#include <cstdlib>

#if !defined(_WIN32)
#include <signal.h>
#endif

namespace pxb::test {
namespace {

void Clean(void* calls) {
    ++*static_cast<int*>(calls);
}
void IllegalInstruction(void*) {
    __asm__ volatile("ud2");
}
void NullStore(void*) {  // in assembly: a sanitizer would report one in C++
    __asm__ volatile("movb $0, (%0)" : : "r"(nullptr) : "memory");
}
void PrivilegedInstruction(void*) {
    __asm__ volatile("hlt");
}

// What the system does about a fault of this thread. On Linux the test has handlers of its own:
// those that were there could be left from an earlier guarded call.
#if defined(_WIN32)
struct OwnHandlers {
    OwnHandlers() {}
};
struct Handling {
    void* registration;
    Handling() { __asm__ volatile("movl %%fs:0, %0" : "=r"(registration)); }
    bool operator==(const Handling& other) const { return registration == other.registration; }
};
#else
struct OwnHandlers {
    struct sigaction illegal, segv;
    OwnHandlers() {
        struct sigaction own = {};
        own.sa_handler = [](int) { std::abort(); };
        sigaction(SIGILL, &own, &illegal);
        sigaction(SIGSEGV, &own, &segv);
    }
    ~OwnHandlers() {
        sigaction(SIGILL, &illegal, nullptr);
        sigaction(SIGSEGV, &segv, nullptr);
    }
};
struct Handling {
    struct sigaction illegal, segv;
    sigset_t blocked;
    Handling() {
        sigaction(SIGILL, nullptr, &illegal);
        sigaction(SIGSEGV, nullptr, &segv);
        sigprocmask(SIG_BLOCK, nullptr, &blocked);
    }
    bool operator==(const Handling& other) const {
        return illegal.sa_handler == other.illegal.sa_handler &&
               segv.sa_handler == other.segv.sa_handler &&
               sigismember(&blocked, SIGILL) == sigismember(&other.blocked, SIGILL) &&
               sigismember(&blocked, SIGSEGV) == sigismember(&other.blocked, SIGSEGV);
    }
};
#endif

TEST(GuardedCall, SurvivesFaultsAndLeavesNothingBehind) {
    const OwnHandlers own;
    const Handling before;
    int calls = 0;
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(RunGuarded(Clean, &calls));
        ASSERT_TRUE(Handling() == before);
        for (const auto function : {IllegalInstruction, NullStore, PrivilegedInstruction}) {
            ASSERT_FALSE(RunGuarded(function, nullptr));
            ASSERT_TRUE(Handling() == before);
        }
    }
    EXPECT_EQ(calls, 100);
}

}  // namespace
}  // namespace pxb::test
