// Calls as old programs make them. On 32 bits they keep the stack at 4 bytes only. They compute with
// x87 registers, which share their place with those of MMX and must be left empty, and copy with
// string instructions, which go by the direction flag.
#pragma once
#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <type_traits>

#include "PxbLib.h"

namespace pxb::test {

#if defined(__i386__) && !defined(PXB_SANITIZED)  // which itself needs an aligned stack
constexpr bool kHasOldStacks = true;
#else
constexpr bool kHasOldStacks = false;
#endif

template <class Result>
struct OldCall {
    Result result;
    std::string fault;  // what the function broke or left behind; empty: nothing
};

// What is left behind right now; sets it right, too.
std::string FaultOfFlagsAndX87();

// Where the stack lies when the next calls are made: bytes past a multiple of 16.
inline constinit std::uint32_t old_stack = 4;

// Calls a function of 32-bit words, of which it should take the first `popped` bytes off the stack.
OldCall<std::uint32_t> CallWithWords(const void* function, const std::uint32_t* words,
                                     std::uint32_t count, std::uint32_t popped);

template <class Result, class... Arguments>
OldCall<Result> CallAsOldProgram(Result(PXB_CALL* function)(Arguments...),
                                 std::type_identity_t<Arguments>... arguments) {
    if constexpr (!kHasOldStacks) {
        const Result result = function(arguments...);
        return {result, FaultOfFlagsAndX87()};
    } else if constexpr (sizeof(Result) == 4) {
        const std::array<std::uint32_t, sizeof...(arguments)> words = {
            std::bit_cast<std::uint32_t>(arguments)...};
        const auto [result, fault] =
            CallWithWords(reinterpret_cast<const void*>(function), words.data(), words.size(), 0);
        return {std::bit_cast<Result>(result), fault};
    } else {  // a structure: its address goes before all arguments, and on Linux off the stack again
        Result result;
        const std::array<std::uint32_t, 1 + sizeof...(arguments)> words = {
            std::bit_cast<std::uint32_t>(&result), std::bit_cast<std::uint32_t>(arguments)...};
#if defined(_WIN32)
        constexpr std::uint32_t kPopped = 0;
#else
        constexpr std::uint32_t kPopped = 4;
#endif
        const auto call = CallWithWords(reinterpret_cast<const void*>(function), words.data(),
                                        words.size(), kPopped);
        return {result, call.fault};
    }
}

}  // namespace pxb::test
