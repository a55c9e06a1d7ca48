// Writing beside the target, renaming at the end, cleaning up on every other way out.
#include "output_file.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <utility>

#include <unistd.h>

#include "binary_streams.h"
#include "error.h"

namespace pxb::tool {
namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)
constexpr char kCreate[] = "wb";
void RemoveWhenInterrupted(const std::string&) {}  // an open file cannot be removed there
#else
constexpr char kCreate[] = "wbx";  // x: never through a link that somebody put there

// For the signal handler, which may use neither objects nor memory. One output at a time.
char unfinished_path[4096];

extern "C" void RemoveUnfinished(int signal) {
    if (unfinished_path[0] != '\0') unlink(unfinished_path);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void RemoveWhenInterrupted(const std::string& path) {
    if (path.size() >= sizeof unfinished_path) return;
    std::memcpy(unfinished_path, path.c_str(), path.size() + 1);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM})
        if (std::signal(signal, RemoveUnfinished) == SIG_IGN) std::signal(signal, SIG_IGN);
}
#endif

// Devices and pipes are written as they are: renaming would replace them.
bool IsDevice(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error) && !fs::is_regular_file(path, error);
}

// A link stays, and the file behind it is replaced.
std::string FollowLinks(const std::string& path) {
    std::error_code error;
    const fs::path real = fs::canonical(path, error);
    return error ? path : real.string();
}

}  // namespace

OutputFile::OutputFile(const std::string& path)
    : name_(path == "-" ? "standard output" : path), target_(path) {
    if (path == "-") {
        file_ = BinaryStdout();
        return;
    }
    std::error_code error;
    if (fs::is_directory(path, error)) throw Error(name_, "open", "", "is a directory");
    if (IsDevice(path)) {
        file_ = std::fopen(path.c_str(), "wb");
    } else {
        target_ = FollowLinks(path);
        // Renaming asks for rights on the folder alone; a protected file shall stay.
        if (fs::exists(target_, error) && access(target_.c_str(), W_OK) != 0) Fail("open");
        unfinished_ = target_ + ".pxb-" + std::to_string(getpid()) + ".tmp";
        RemoveWhenInterrupted(unfinished_);
        file_ = std::fopen(unfinished_.c_str(), kCreate);
    }
    if (!file_) Fail("open");
}

OutputFile::~OutputFile() {
    if (file_ && file_ != stdout) std::fclose(file_);
    if (!unfinished_.empty()) std::remove(unfinished_.c_str());
    RemoveWhenInterrupted("");
}

void OutputFile::Fail(std::string_view step) const {
    throw Error(name_, step, "", std::strerror(errno));
}

void OutputFile::Write(const void* from, std::int64_t bytes) {
    const auto size = static_cast<std::size_t>(bytes);
    if (std::fwrite(from, 1, size, file_) != size) Fail("write");
}

void OutputFile::Close(std::string_view step) {
    std::FILE* const file = std::exchange(file_, nullptr);
    if (std::fflush(file) != 0) {
        const int reason = errno;
        if (file != stdout) std::fclose(file);
        errno = reason;
        Fail(step);
    }
    if (file != stdout && std::fclose(file) != 0) Fail(step);
}

void OutputFile::Commit() {
    Close("write");
    if (unfinished_.empty()) return;
    std::error_code error;
    const fs::file_status replaced = fs::status(target_, error);
    if (fs::exists(replaced)) fs::permissions(unfinished_, replaced.permissions(), error);
    fs::rename(unfinished_, target_, error);
    if (error) throw Error(name_, "rename", unfinished_, error.message());
    unfinished_.clear();
    RemoveWhenInterrupted("");
}

}  // namespace pxb::tool
