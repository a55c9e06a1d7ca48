#include "convert/guarded_call.h"

#include <gtest/gtest.h>

#include <algorithm>
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

// What the system does about a fault of this thread. On Linux the test has a handler of its own:
// those that were there could be left from an earlier guarded call.
#if defined(_WIN32)
struct OwnHandling {
    void* registration = Registration();
    static void* Registration() {
        void* first;
        __asm__ volatile("movl %%fs:0, %0" : "=r"(first));
        return first;
    }
    bool IsInPlace() const { return Registration() == registration; }
};
#else
struct OwnHandling {
    struct sigaction previous[2];
    static constexpr int kSignals[] = {SIGILL, SIGSEGV};
    static void Handle(int) { std::abort(); }
    OwnHandling() {
        struct sigaction own = {};
        own.sa_handler = Handle;
        for (int i = 0; i < 2; ++i) sigaction(kSignals[i], &own, &previous[i]);
    }
    ~OwnHandling() {
        for (int i = 0; i < 2; ++i) sigaction(kSignals[i], &previous[i], nullptr);
    }
    static bool IsInPlace() {
        sigset_t blocked;
        sigprocmask(SIG_BLOCK, nullptr, &blocked);
        return std::all_of(kSignals, kSignals + 2, [&](int signal) {
            struct sigaction now;
            sigaction(signal, nullptr, &now);
            return now.sa_handler == Handle && !sigismember(&blocked, signal);
        });
    }
};
#endif

TEST(GuardedCall, SurvivesFaultsAndLeavesNothingBehind) {
    const OwnHandling own;
    int calls = 0;
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(RunGuarded(Clean, &calls));
        ASSERT_TRUE(own.IsInPlace());
        for (const auto function : {IllegalInstruction, NullStore, PrivilegedInstruction}) {
            ASSERT_FALSE(RunGuarded(function, nullptr));
            ASSERT_TRUE(own.IsInPlace());
        }
    }
    EXPECT_EQ(calls, 100);
}

}  // namespace
}  // namespace pxb::test
