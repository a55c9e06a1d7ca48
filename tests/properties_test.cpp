// Every property with arguments from a generator that is the same on every build.
#include "fuzz/properties.h"

#include <gtest/gtest.h>

#include "support/effort.h"

namespace pxb::test {

static void PrintTo(const Property& property, std::ostream* out) {
    *out << property.name;
}

namespace {

class AnyArguments : public testing::TestWithParam<Property> {};

TEST_P(AnyArguments, KeepWhatIsPromised) {
    const int trials = GetParam().trials / (kThorough ? 1 : 8);
    for (int i = 0; i < trials; ++i) {
        SCOPED_TRACE(testing::Message() << "trial " << i);
        const auto generated = Generated(i);
        Bytes bytes(generated);
        ASSERT_NO_THROW(GetParam().check(bytes));
    }
}

INSTANTIATE_TEST_SUITE_P(Property, AnyArguments, testing::ValuesIn(Properties()),
                         [](const auto& property) { return property.param.name; });

}  // namespace
}  // namespace pxb::test
