// Each operation of each register class, on its own. Compiled once per instruction set, so nothing of
// the standard library is used here: its inline functions must not become wide code for everybody.
#pragma once
#include <cstdint>

#include "core/variants.h"

// In pxb::<target>: calls `differs(name, pixels)` for each operation whose bytes are not those of
// plain integers; `name` is the operation, `pixels` the class. `noise` are 4096 bytes.
#define PXB_DECLARE_CHECK_VOCABULARY(target)                             \
    namespace pxb::target {                                              \
    void CheckVocabulary(const std::uint8_t* noise,                      \
                         void (*differs)(const char* name, int pixels)); \
    }
PXB_SIMD_TARGETS(PXB_DECLARE_CHECK_VOCABULARY)
#undef PXB_DECLARE_CHECK_VOCABULARY
