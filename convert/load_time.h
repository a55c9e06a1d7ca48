#pragma once
#include <cstdint>

namespace pxb {

// Probes the processor and fills the KernelTable, once: does nothing when the word of features is
// already known. Returns that word. Runs by itself while the library is loaded.
std::uint32_t InitialiseOnce();

}  // namespace pxb
