#include "core/pixel_memory.h"

#include <limits>
#include <new>

namespace pxb {
namespace {

constexpr std::align_val_t kAlignment{64};

}  // namespace

std::uint8_t* AllocatePixels(std::int64_t bytes) {
    // Aligned operator new wraps around for huge sizes, so they must not reach it.
    if (bytes < 0 || bytes > std::numeric_limits<std::int32_t>::max()) return nullptr;
    return static_cast<std::uint8_t*>(
        ::operator new(static_cast<std::size_t>(bytes), kAlignment, std::nothrow));
}

void ReleasePixels(std::uint8_t* pixels) {
    ::operator delete(pixels, kAlignment);
}

}  // namespace pxb
