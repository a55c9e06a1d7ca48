// Memory between inaccessible pages, so that an access outside it ends the program.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace pxb::test {

// Two areas of whole pages:    guard | first | guard | second | guard
class GuardedMemory {
  public:
    static constexpr std::size_t kPage = 4096, kArea = 2 * kPage;

    explicit GuardedMemory(std::size_t area = kArea)
        : area_(area), size_(3 * kPage + 2 * area), base_(Allocate(size_)) {
        for (int guard = 0; guard < 3; ++guard)
            Protect(base_ + guard * (kPage + area_), kPage, kNoAccess);
    }
    ~GuardedMemory() { Release(); }
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    void ForbidWriting(bool forbid) const {
        for (std::uint8_t* area : {First(), Second()})
            Protect(area, area_, forbid ? kReadOnly : kReadWrite);
    }

    std::uint8_t* Base() const { return base_; }
    std::uint8_t* First() const { return base_ + kPage; }
    std::uint8_t* FirstEnd() const { return First() + area_; }
    std::uint8_t* Second() const { return FirstEnd() + kPage; }

  private:
#if defined(_WIN32)
    static std::uint8_t* Allocate(std::size_t size) {
        void* const p = VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
        return p ? static_cast<std::uint8_t*>(p) : (std::abort(), nullptr);
    }
    static constexpr DWORD kNoAccess = PAGE_NOACCESS, kReadOnly = PAGE_READONLY,
                           kReadWrite = PAGE_READWRITE;
    static void Protect(std::uint8_t* first, std::size_t bytes, DWORD access) {
        DWORD before;
        if (!VirtualProtect(first, bytes, access, &before)) std::abort();
    }
    void Release() {
        VirtualFree(base_, 0, MEM_RELEASE);
    }
#else
    static std::uint8_t* Allocate(std::size_t size) {
        void* const p =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return p != MAP_FAILED ? static_cast<std::uint8_t*>(p) : (std::abort(), nullptr);
    }
    static constexpr int kNoAccess = PROT_NONE, kReadOnly = PROT_READ,
                         kReadWrite = PROT_READ | PROT_WRITE;
    static void Protect(std::uint8_t* first, std::size_t bytes, int access) {
        if (mprotect(first, bytes, access) != 0) std::abort();
    }
    void Release() {
        munmap(base_, size_);
    }
#endif

    std::size_t area_, size_;
    std::uint8_t* base_;
};

}  // namespace pxb::test
