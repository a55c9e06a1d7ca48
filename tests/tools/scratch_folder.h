// A folder of the test's own, which goes away with it, and files in it.
#pragma once
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "error.h"
#include "gtest/gtest.h"

namespace pxb::tool {

template <class Action>
std::string MessageOf(Action action) {
    try {
        action();
    } catch (const Error& error) {
        return error.what();
    }
    return "no error";
}

class ScratchFolder : public testing::Test {
  protected:
    ScratchFolder()
        : folder_(std::filesystem::temp_directory_path() /
                  ("pxb_tool_test_" + std::to_string(getpid()))) {
        std::filesystem::create_directories(folder_);
    }
    ~ScratchFolder() override { std::filesystem::remove_all(folder_); }

    std::string Path(const std::string& name) const { return (folder_ / name).string(); }

    std::string Put(const std::string& name, const std::string& bytes) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }

    std::string Get(const std::string& name) const {
        std::ifstream file(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::size_t FileCount() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(folder_), {}));
    }

  private:
    std::filesystem::path folder_;
};

}  // namespace pxb::tool
