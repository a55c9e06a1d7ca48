// The unit of all pixel memory, and how functions are forced into their callers: code that is
// compiled for wide registers must leave no copy of its own behind, see CONTRIBUTING.md.
#pragma once
#include <cstdint>

#define PXB_INLINE inline __attribute__((always_inline))
#define PXB_INLINE_LAMBDA __attribute__((always_inline))

namespace pxb {

using Byte = std::uint8_t;

}  // namespace pxb
