// The file is marked for deletion from the start, until it is renamed: however the program ends, the
// system removes it.
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <windows.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "error.h"
#include "paths.h"
#include "unfinished_file.h"

namespace pxb::tool {
namespace {

constexpr int kMaxTries = 1000;  // of names that others have left
constexpr int kExists = 0, kMayWrite = 2;

bool Mark(HANDLE file, bool deleted) {
    FILE_DISPOSITION_INFO mark = {deleted};
    return SetFileInformationByHandle(file, FileDispositionInfo, &mark, sizeof(mark));
}

std::string LastError() {
    return std::system_category().message(static_cast<int>(GetLastError()));
}

// The stream's handle, or INVALID_HANDLE_VALUE.
HANDLE Create(const std::filesystem::path& path) {
    return CreateFileW(path.c_str(), GENERIC_WRITE | DELETE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

struct UnfinishedFile::Place {
    std::filesystem::path target, file;
    HANDLE handle = INVALID_HANDLE_VALUE;  // of the file, beside that of the stream

    void Close() {
        if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
        handle = INVALID_HANDLE_VALUE;
    }
};

UnfinishedFile::UnfinishedFile(const std::string& name, const std::filesystem::path& target)
    : name_(name), place_(std::make_unique<Place>()) {
    place_->target = target;
    const std::filesystem::path folder = target.parent_path();
    if ((!folder.empty() && _waccess(folder.c_str(), kExists) != 0) ||
        (_waccess(target.c_str(), kMayWrite) != 0 && errno != ENOENT))
        throw Error(name_, "open", "", std::strerror(errno));
}

UnfinishedFile::~UnfinishedFile() {
    place_->Close();
}

std::FILE* UnfinishedFile::Open() {
    HANDLE file = INVALID_HANDLE_VALUE;
    for (int number = 0; file == INVALID_HANDLE_VALUE && number < kMaxTries; ++number) {
        place_->file = place_->target.parent_path() /
                       ("pxb-" + std::to_string(_getpid()) + "-" + std::to_string(number) + ".tmp");
        file = Create(place_->file);
        if (file == INVALID_HANDLE_VALUE && GetLastError() != ERROR_FILE_EXISTS) break;
    }
    if (file == INVALID_HANDLE_VALUE || !Mark(file, true) ||
        !DuplicateHandle(GetCurrentProcess(), file, GetCurrentProcess(), &place_->handle, 0, FALSE,
                         DUPLICATE_SAME_ACCESS)) {
        const std::string why = LastError();
        if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
        throw Error(name_, "create beside it", NameOf(place_->file.filename()), why);
    }
    const int number = _open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_BINARY);
    std::FILE* const stream = number < 0 ? nullptr : _fdopen(number, "wb");
    if (!stream)
        throw Error(name_, "create beside it", NameOf(place_->file.filename()),
                    std::strerror(errno));
    return stream;
}

void UnfinishedFile::Rename() {
    const bool stays = Mark(place_->handle, false);
    const std::string why = LastError();
    place_->Close();
    if (!stays) throw Error(name_, "keep", NameOf(place_->file), why);
    std::error_code error;
    std::filesystem::rename(place_->file, place_->target, error);
    if (!error) return;
    std::error_code ignored;
    std::filesystem::remove(place_->file, ignored);
    throw Error(name_, "rename", NameOf(place_->file), error.message());
}

}  // namespace pxb::tool
