#include "bench/machine.h"

#include <cpuid.h>

#include <cstring>

#if defined(_WIN32)
#include <windows.h>
#else
#include <sched.h>
#include <time.h>
#endif

namespace pxb::bench {

#if defined(_WIN32)
double Seconds() {
    LARGE_INTEGER ticks, per_second;
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&per_second);
    return static_cast<double>(ticks.QuadPart) / static_cast<double>(per_second.QuadPart);
}

void PinThread() {
    SetThreadAffinityMask(GetCurrentThread(), DWORD_PTR{1} << GetCurrentProcessorNumber());
}
#else
double Seconds() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

void PinThread() {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(sched_getcpu(), &set);
    sched_setaffinity(0, sizeof set, &set);
}
#endif

std::string ProcessorName() {
    constexpr unsigned kFirstPart = 0x80000002, kParts = 3;
    char name[16 * kParts + 1] = {};
    for (unsigned part = 0; part < kParts; ++part) {
        unsigned words[4];
        if (!__get_cpuid(kFirstPart + part, &words[0], &words[1], &words[2], &words[3])) return "";
        std::memcpy(name + 16 * part, words, sizeof words);
    }
    std::string trimmed = name;
    trimmed.erase(trimmed.find_last_not_of(' ') + 1);
    trimmed.erase(0, trimmed.find_first_not_of(' '));
    return trimmed;
}

std::string CompilerName() {
#if defined(__clang__)
    return __VERSION__;
#else
    return "GCC " __VERSION__;
#endif
}

}  // namespace pxb::bench
