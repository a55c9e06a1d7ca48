// A file, or standard output, that appears complete or not at all: bytes go to a temporary file
// beside the target, which Commit renames. Without Commit, or when the program is interrupted, the
// temporary file goes away and an older file of that name stays as it was.
#pragma once
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace pxb::tool {

class OutputFile {
  public:
    explicit OutputFile(const std::string& path);  // "-" is standard output
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    const std::string& name() const { return name_; }

    void Write(const void* from, std::int64_t bytes);
    void Write(std::string_view text) {
        Write(text.data(), static_cast<std::int64_t>(text.size()));
    }
    void Commit();

  private:
    [[noreturn]] void Fail(std::string_view step) const;
    void Close(std::string_view step);

    std::string name_, target_, unfinished_;  // unfinished: "" for streams and devices
    std::FILE* file_ = nullptr;
};

}  // namespace pxb::tool
