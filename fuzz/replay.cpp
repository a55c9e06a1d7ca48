// usage: replay FOLDER
//
// Checks properties with the findings that are kept: FOLDER/<property>/<any name>.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/properties.h"

namespace {

using namespace pxb::test;

// What lies outside images ends the program, so the name comes first.
bool Holds(const Property& property, const std::filesystem::path& path) try {
    std::printf("%s\n", path.string().c_str());
    std::fflush(stdout);
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> all{std::istreambuf_iterator<char>(file), {}};
    Bytes bytes({reinterpret_cast<const std::uint8_t*>(all.data()), all.size()});
    property.check(bytes);
    return true;
} catch (const std::exception& finding) {
    std::printf("  %s\n", finding.what());
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    int failures = argc == 2 ? 0 : 1;
    for (const Property& property : Properties()) {
        const auto folder = std::filesystem::path(argv[argc - 1]) / property.name;
        if (!std::filesystem::exists(folder)) continue;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            failures += !Holds(property, entry.path());
    }
    return failures != 0;
}
