// One property for the fuzzer, which names the program after it: fuzz_<property>.
#include <string_view>

#include "fuzz/properties.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const pxb::test::Property& property : pxb::test::Properties())
        if (property.name == std::string_view(PXB_PROPERTY)) {
            pxb::test::Bytes bytes({data, size});
            property.check(bytes);
        }
    return 0;
}
