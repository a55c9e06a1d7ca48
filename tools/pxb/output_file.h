// A file, or standard output, that appears complete or not at all: bytes go to an unfinished file
// beside the target, which Commit renames.
#pragma once
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "unfinished_file.h"

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
    void Close();
    [[noreturn]] void Fail(std::string_view step) const;

    std::string name_;
    std::optional<UnfinishedFile> unfinished_;  // none for streams and devices
    std::FILE* file_ = nullptr;
};

}  // namespace pxb::tool
