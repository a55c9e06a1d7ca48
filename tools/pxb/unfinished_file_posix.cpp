// The temporary file is named through its open folder: a path that fits for the target might not for
// a longer name beside it.
#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <mutex>
#include <optional>
#include <utility>

#include "error.h"
#include "unfinished_file.h"

namespace pxb::tool {

// For the signal handler, which may use neither objects nor memory that somebody frees: records
// stay, and serve the next file. `folder` is -1 where there is nothing to remove.
struct UnfinishedRecord {
    std::atomic<int> folder = -1;
    char name[40] = {};
    UnfinishedRecord* next = nullptr;
};
struct OpenFolder {
    explicit OpenFolder(const std::string& path)
        : descriptor(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;
    ~OpenFolder() {
        if (descriptor >= 0) close(descriptor);
    }

    int descriptor;
};

namespace {

constexpr int kMaxTries = 1000;  // of names that others have left

std::atomic<UnfinishedRecord*> records;

// Held while a file is made and noted down, and by the handler for good: after it no other thread
// shall make a file that would stay.
std::atomic_flag making = ATOMIC_FLAG_INIT;

extern "C" void RemoveUnfinished(int signal) {
    while (making.test_and_set()) sched_yield();  // its holder takes no signals, and is soon done
    for (const UnfinishedRecord* record = records; record; record = record->next)
        if (const int folder = record->folder; folder >= 0) unlinkat(folder, record->name, 0);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

// Signals that end a program from outside. One that is ignored, as under nohup, stays ignored, and
// one that the program handles stays with it: a fuzzer measures time by SIGALRM.
void RemoveWhenInterrupted() {
    struct sigaction remove = {}, old = {};
    remove.sa_handler = RemoveUnfinished;
    sigfillset(&remove.sa_mask);
    for (const int signal :
         {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU, SIGALRM, SIGVTALRM, SIGPROF, SIGUSR1, SIGUSR2})
        if (sigaction(signal, nullptr, &old) == 0 && old.sa_handler == SIG_DFL)
            sigaction(signal, &remove, nullptr);
}

UnfinishedRecord* FreeRecord() {
    UnfinishedRecord* record = records;
    while (record && record->folder >= 0) record = record->next;
    if (record) return record;
    record = new UnfinishedRecord;
    record->next = records;
    records = record;
    return record;
}

// No signal may come between making a file and noting it down, in whatever thread.
class SignalsHeld {
  public:
    SignalsHeld() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &before_);
        while (making.test_and_set()) sched_yield();
    }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    ~SignalsHeld() {
        making.clear();
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }

  private:
    sigset_t before_;
};

}  // namespace

struct UnfinishedFile::Place {
    std::optional<OpenFolder> folder;
    std::string target;
    std::optional<struct stat> replaced;
    UnfinishedRecord* record = nullptr;  // null: nothing to remove
};

UnfinishedFile::UnfinishedFile(const std::string& name, const std::filesystem::path& target)
    : name_(name), place_(std::make_unique<Place>()) {
    const auto fail = [&] { throw Error(name_, "open", "", std::strerror(errno)); };
    const std::string parent = target.parent_path().string();
    place_->folder.emplace(parent.empty() ? "." : parent);
    place_->target = target.filename().string();
    const int folder = place_->folder->descriptor;
    if (folder < 0) fail();
    struct stat replaced;
    if (fstatat(folder, place_->target.c_str(), &replaced, 0) == 0)
        place_->replaced = replaced;
    else if (place_->target.empty() || errno != ENOENT)
        fail();
    // Renaming asks for rights on the folder alone; a protected file shall stay.
    if (place_->replaced && faccessat(folder, place_->target.c_str(), W_OK, 0) != 0) fail();
}

UnfinishedFile::~UnfinishedFile() {
    if (!place_->record) return;
    unlinkat(place_->folder->descriptor, place_->record->name, 0);
    place_->record->folder = -1;
}

std::FILE* UnfinishedFile::Open() {
    static std::once_flag once;
    std::call_once(once, RemoveWhenInterrupted);
    const int folder = place_->folder->descriptor;
    const SignalsHeld held;
    UnfinishedRecord* const record = FreeRecord();
    int file = -1;
    for (int number = 0; file < 0 && number < kMaxTries; ++number) {
        std::snprintf(record->name, sizeof record->name, "pxb-%ld-%d.tmp",
                      static_cast<long>(getpid()), number);
        // O_EXCL: never through a link that somebody put there. Until it is complete, what shall
        // replace a file is the owner's alone.
        file = openat(folder, record->name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                      place_->replaced ? 0600 : 0666);
        if (file < 0 && errno != EEXIST) break;
    }
    std::FILE* const stream = file < 0 ? nullptr : fdopen(file, "wb");
    if (!stream) throw Error(name_, "create beside it", record->name, std::strerror(errno));
    record->folder = folder;
    place_->record = record;
    return stream;
}

void UnfinishedFile::Rename() {
    const int folder = place_->folder->descriptor;
    const char* const from = place_->record->name;
    if (const auto& old = place_->replaced) {
        // What the old group might do, another may only if everybody might.
        mode_t mode = old->st_mode & 0777;
        if (fchownat(folder, from, old->st_uid, old->st_gid, 0) != 0 &&
            fchownat(folder, from, static_cast<uid_t>(-1), old->st_gid, 0) != 0)
            mode &= 0707 | (mode & 0007) << 3;
        fchmodat(folder, from, mode, 0);
    }
    if (renameat(folder, from, folder, place_->target.c_str()) != 0)
        throw Error(name_, "rename", from, std::strerror(errno));
    place_->record->folder = -1;
    place_->record = nullptr;
}

}  // namespace pxb::tool
