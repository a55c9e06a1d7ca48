#include "output_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "binary_streams.h"
#include "error.h"
#include "paths.h"

namespace pxb::tool {
namespace {

namespace fs = std::filesystem;

constexpr int kMaxLinks = 40;

// Devices and pipes are written as they are: renaming would replace them.
bool IsDevice(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error) && !fs::is_regular_file(path, error);
}

// A link stays, and the file behind it is replaced, or made where there was none.
fs::path FollowLinks(fs::path path) {
    std::error_code error;
    for (int links = 0; links < kMaxLinks; ++links) {
        const fs::path behind = fs::read_symlink(path, error);
        if (error) break;
        path = path.parent_path() / behind;
    }
    return path;
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : name_(path == "-" ? "standard output" : path) {
    if (path == "-") {
        file_ = BinaryStdout();
        return;
    }
    const fs::path target = PathOf(path);
    std::error_code error;
    if (fs::is_directory(target, error)) throw Error(name_, "open", "", "is a directory");
    if (IsDevice(target)) {
        file_ = OpenFile(path, "wb");
        if (!file_) Fail("open");
    } else {
        unfinished_.emplace(name_, FollowLinks(target));
        file_ = unfinished_->Open();
    }
}

OutputFile::~OutputFile() {
    if (file_ && file_ != stdout) std::fclose(file_);
}

void OutputFile::Fail(std::string_view step) const {
    throw Error(name_, step, "", std::strerror(errno));
}

void OutputFile::Write(const void* from, std::int64_t bytes) {
    const auto size = static_cast<std::size_t>(bytes);
    if (std::fwrite(from, 1, size, file_) != size) Fail("write");
}

void OutputFile::Close() {
    std::FILE* const file = std::exchange(file_, nullptr);
    if (!file) return;
    if (std::fflush(file) != 0) {
        const int reason = errno;
        if (file != stdout) std::fclose(file);
        errno = reason;
        Fail("write");
    }
    if (file != stdout && std::fclose(file) != 0) Fail("write");
}

void OutputFile::Commit() {
    Close();
    if (unfinished_) unfinished_->Rename();
}

}  // namespace pxb::tool
