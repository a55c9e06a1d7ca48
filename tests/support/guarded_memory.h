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

// Two areas of kArea bytes:    guard | first | guard | second | guard
class GuardedMemory {
  public:
    static constexpr std::size_t kPage = 4096, kArea = 2 * kPage, kSize = 3 * kPage + 2 * kArea;

    GuardedMemory() : base_(Allocate()) {
        for (int guard = 0; guard < 3; ++guard)
            Protect(base_ + guard * (kPage + kArea), kPage, kNoAccess);
    }
    ~GuardedMemory() { Release(); }
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    void ForbidWriting() const {
        for (std::uint8_t* area : {First(), Second()}) Protect(area, kArea, kReadOnly);
    }

    std::uint8_t* Base() const { return base_; }
    std::uint8_t* First() const { return base_ + kPage; }
    std::uint8_t* FirstEnd() const { return First() + kArea; }
    std::uint8_t* Second() const { return FirstEnd() + kPage; }

  private:
#if defined(_WIN32)
    static std::uint8_t* Allocate() {
        void* const p = VirtualAlloc(nullptr, kSize, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
        return p ? static_cast<std::uint8_t*>(p) : (std::abort(), nullptr);
    }
    static constexpr DWORD kNoAccess = PAGE_NOACCESS, kReadOnly = PAGE_READONLY;
    static void Protect(std::uint8_t* first, std::size_t bytes, DWORD access) {
        DWORD before;
        if (!VirtualProtect(first, bytes, access, &before)) std::abort();
    }
    void Release() {
        VirtualFree(base_, 0, MEM_RELEASE);
    }
#else
    static std::uint8_t* Allocate() {
        void* const p =
            mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return p != MAP_FAILED ? static_cast<std::uint8_t*>(p) : (std::abort(), nullptr);
    }
    static constexpr int kNoAccess = PROT_NONE, kReadOnly = PROT_READ;
    static void Protect(std::uint8_t* first, std::size_t bytes, int access) {
        if (mprotect(first, bytes, access) != 0) std::abort();
    }
    void Release() {
        munmap(base_, kSize);
    }
#endif

    std::uint8_t* base_;
};

}  // namespace pxb::test
