// The machine: its clock, its processor, and the compiler that built for it.
#pragma once
#include <string>

namespace pxb::bench {

// Seconds of processor time of the calling thread; on Windows, whose processor time is too coarse,
// of the wall clock.
double Seconds();

// Keeps the calling thread on the processor on which it runs.
void PinThread();

// The processor's own name.
std::string ProcessorName();

std::string CompilerName();

}  // namespace pxb::bench
