// Buffered sequential reading with a look ahead.
#include "input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "binary_streams.h"
#include "error.h"
#include "paths.h"

namespace pxb::tool {
namespace {

constexpr std::size_t kBufferBytes = 1 << 16, kMaxLine = 4096;

}  // namespace

InputFile::InputFile(const std::string& path)
    : name_(path == "-" ? "standard input" : path), buffer_(kBufferBytes) {
    if (path == "-") {
        file_.reset(BinaryStdin());
        return;
    }
    std::error_code error;
    const std::filesystem::path file = PathOf(path);
    if (std::filesystem::is_directory(file, error))
        throw Error(name_, "open", "", "is a directory");
    file_.reset(OpenFile(path, "rb"));
    if (!file_) throw Error(name_, "open", "", std::strerror(errno));
    if (std::filesystem::is_regular_file(file, error))
        remaining_ = static_cast<std::int64_t>(std::filesystem::file_size(file));
}

void InputFile::Fill() {
    if (next_ == end_ && buffer_.size() > kBufferBytes)
        std::vector<char>(kBufferBytes).swap(buffer_);
    std::memmove(buffer_.data(), buffer_.data() + next_, end_ - next_);
    end_ -= next_;
    next_ = 0;
    end_ += std::fread(buffer_.data() + end_, 1, buffer_.size() - end_, file_.get());
    if (std::ferror(file_.get())) throw Error(name_, "read", "", std::strerror(errno));
}

std::string_view InputFile::Peek(std::size_t bytes) {
    if (end_ - next_ < bytes) Fill();
    return {buffer_.data() + next_, std::min(bytes, end_ - next_)};
}

std::optional<char> InputFile::Get() {
    char byte;
    if (Take(&byte, 1) == 0) return std::nullopt;
    return byte;
}

std::size_t InputFile::Take(void* to, std::size_t bytes) {
    std::size_t done = 0;
    while (done < bytes) {
        if (next_ == end_) Fill();
        const std::size_t some = std::min(bytes - done, end_ - next_);
        if (some == 0) break;
        std::memcpy(static_cast<char*>(to) + done, buffer_.data() + next_, some);
        next_ += some;
        done += some;
    }
    taken_ += static_cast<std::int64_t>(done);
    if (remaining_) *remaining_ -= static_cast<std::int64_t>(done);
    return done;
}

void InputFile::CheckEnough(std::int64_t found, std::int64_t needed, std::string_view field) const {
    if (found < needed)
        throw Error(name_, field, std::to_string(found) + " bytes",
                    "the file ends where " + std::to_string(needed) + " are needed");
}

void InputFile::Read(void* to, std::int64_t bytes, std::string_view field) {
    CheckEnough(static_cast<std::int64_t>(Take(to, static_cast<std::size_t>(bytes))), bytes, field);
}

std::size_t InputFile::ReadSome(void* to, std::size_t bytes, std::string_view field) {
    const std::size_t taken = Take(to, bytes);
    CheckEnough(static_cast<std::int64_t>(taken), 1, field);
    return taken;
}

std::string InputFile::ReadLine(std::string_view field) {
    std::string line;
    for (std::optional<char> c = Get(); c != '\n'; c = Get()) {
        if (!c || line.size() == kMaxLine)
            throw Error(name_, field, line.substr(0, 40), "the line does not end");
        line += *c;
    }
    return line;
}

void InputFile::Skip(std::int64_t bytes, std::string_view field) {
    char dropped[4096];
    while (bytes > 0) {
        const std::int64_t some = std::min<std::int64_t>(bytes, sizeof dropped);
        Read(dropped, some, field);
        bytes -= some;
    }
}

void InputFile::Require(std::int64_t bytes, std::string_view field) {
    if (remaining_) {
        if (*remaining_ < bytes)
            throw Error(name_, field, std::to_string(bytes) + " bytes",
                        "the file has only " + std::to_string(*remaining_) + " left");
        return;
    }
    const auto ahead = [this] { return static_cast<std::int64_t>(end_ - next_); };
    while (bytes > taken_ && ahead() < bytes) {
        const std::int64_t found = ahead();
        if (end_ - next_ == buffer_.size()) buffer_.resize(2 * buffer_.size());
        Fill();
        if (ahead() == found) CheckEnough(found, bytes, field);
    }
}

}  // namespace pxb::tool
