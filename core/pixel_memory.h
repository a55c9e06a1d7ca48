// Pixel memory: aligned to a cache line, of which callers are promised 16 bytes; released only by
// the function that stands here.
#pragma once
#include <cstdint>

namespace pxb {

// Null if there is no memory, or if `bytes` is negative or above 2^31 - 1, on every build alike.
// 0 bytes give a non-null address.
std::uint8_t* AllocatePixels(std::int64_t bytes);

void ReleasePixels(std::uint8_t* pixels);

}  // namespace pxb
