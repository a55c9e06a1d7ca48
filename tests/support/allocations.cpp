#include "support/allocations.h"

#include <cstdint>
#include <cstdlib>
#include <new>

#if defined(_WIN32)
#include <malloc.h>
#endif

namespace {

constexpr int kNever = -1;
constinit int live = 0, countdown = kNever;

void* Count(void* block) {
    if (block) ++live;
    return block;
}

bool MustFail() {
    return countdown != kNever && countdown-- == 0;
}

// The usual operator wraps around for huge sizes and then returns too little memory. So the library
// has to refuse them before; here they end the program.
void* AllocateAligned(std::size_t size, std::size_t alignment) {
    if (size > INT32_MAX) std::abort();
#if defined(_WIN32)
    return _aligned_malloc(size, alignment);
#else
    void* block = nullptr;
    return posix_memalign(&block, alignment, size) == 0 ? block : nullptr;
#endif
}

void ReleaseAligned(void* block) {
#if defined(_WIN32)
    _aligned_free(block);
#else
    std::free(block);
#endif
}

}  // namespace

void* operator new(std::size_t size) {
    void* const block = Count(std::malloc(size ? size : 1));
    if (!block) std::abort();  // only of this program itself; its own bytes are few
    return block;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return MustFail() ? nullptr : Count(std::malloc(size ? size : 1));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return MustFail() ? nullptr : Count(AllocateAligned(size ? size : 1, std::size_t(alignment)));
}
void operator delete(void* block) noexcept {
    if (block) --live;
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    if (block) --live;
    ReleaseAligned(block);
}

namespace pxb::test {

int LiveAllocations() {
    return live;
}

FailingAllocation::FailingAllocation(int number) {
    countdown = number;
}
// NOLINTNEXTLINE(readability-convert-member-functions-to-static): of the one that lives
bool FailingAllocation::HasFailed() const {
    return countdown == kNever;
}
FailingAllocation::~FailingAllocation() {
    countdown = kNever;
}

}  // namespace pxb::test
