// What the processor offers.
#pragma once
#include "core/variants.h"

namespace pxb {

// Asks the processor, under a guard: all bits are 0 if the question itself faults.
Processor ProbeProcessor();

}  // namespace pxb
