// Nothing is done about signals: an open file could not be removed.
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "error.h"
#include "paths.h"
#include "unfinished_file.h"

namespace pxb::tool {
namespace {

constexpr int kMaxTries = 1000;  // of names that others have left
constexpr int kExists = 0, kMayWrite = 2;

}  // namespace

struct UnfinishedFile::Place {
    std::filesystem::path target, file;  // the file's is empty where there is nothing to remove
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
    std::error_code error;
    if (!place_->file.empty()) std::filesystem::remove(place_->file, error);
}

std::FILE* UnfinishedFile::Open() {
    std::filesystem::path path;
    int file = -1;
    for (int number = 0; file < 0 && number < kMaxTries; ++number) {
        path = place_->target.parent_path() /
               ("pxb-" + std::to_string(_getpid()) + "-" + std::to_string(number) + ".tmp");
        file =
            _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
        if (file < 0 && errno != EEXIST) break;
    }
    std::FILE* const stream = file < 0 ? nullptr : _fdopen(file, "wb");
    if (!stream)
        throw Error(name_, "create beside it", NameOf(path.filename()), std::strerror(errno));
    place_->file = path;
    return stream;
}

void UnfinishedFile::Rename() {
    std::error_code error;
    std::filesystem::rename(place_->file, place_->target, error);
    if (error) throw Error(name_, "rename", NameOf(place_->file), error.message());
    place_->file.clear();
}

}  // namespace pxb::tool
