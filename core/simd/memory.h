// How wide registers reach memory.
#pragma once
#include <cstdint>

#include "core/rows.h"

namespace pxb {

// Streamed stores go around the caches, which saves reading what will be overwritten. They want
// aligned addresses, and win only where source and destination do not stay in the caches anyway.
enum class Stores {
    kCached,
    kStreamed
};

constexpr std::int64_t kStreamedFromPixels = 6'000'000;
constexpr std::uintptr_t kStreamedAlignment = 64;

PXB_INLINE bool IsStreamable(const Byte* row) {
    return reinterpret_cast<std::uintptr_t>(row) % kStreamedAlignment == 0;
}

// For what is not in the caches: conversions read up to four rows at once, more than the processor
// foresees by itself. An address outside the image does no harm.
PXB_INLINE void PrefetchAhead(const Byte* src) {
    __builtin_prefetch(src + 1024);
}

}  // namespace pxb
