// What must hold whatever the arguments. Each property takes them from bytes, calls the library in
// every variant, and throws a Finding where something does not hold; what lies outside the images
// ends the program. The same functions serve the fuzzer, the findings that are kept, and the tests.
#pragma once
#include <span>
#include <stdexcept>
#include <string>

#include "fuzz/bytes.h"

namespace pxb::test {

struct Finding : std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline void Expect(bool holds, const std::string& what) {
    if (!holds) throw Finding(what);
}

struct Property {
    const char* name;
    void (*check)(Bytes& bytes);
    int trials;  // as an ordinary test: about a second
};

std::span<const Property> Properties();

}  // namespace pxb::test
