#include "progress.h"

#include <cmath>
#include <cstdio>

#include <unistd.h>

namespace pxb::tool {
namespace {

constexpr std::chrono::milliseconds kFirst(500), kBetween(200);  // nobody reads faster

}  // namespace

Progress::Progress()
    : terminal_(isatty(fileno(stderr)) != 0), start_(Clock::now()), next_(start_ + kFirst) {}

Progress::~Progress() {
    if (length_ != 0) std::fprintf(stderr, "\r%*s\r", static_cast<int>(length_), "");
}

void Progress::Show(std::int64_t frames, std::optional<double> done) {
    if (!terminal_) return;
    const Clock::time_point now = Clock::now();
    if (now < next_) return;
    next_ = now + kBetween;
    const std::string line =
        ProgressLine(frames, std::chrono::duration<double>(now - start_).count(), done);
    // Spaces over what is left of a longer line; terminals differ in ways to clear it.
    std::fprintf(stderr, "\r%-*s", static_cast<int>(length_), line.c_str());
    std::fflush(stderr);
    length_ = line.size();
}

std::string ProgressLine(std::int64_t frames, double seconds, std::optional<double> done) {
    char rate[64];
    std::snprintf(rate, sizeof rate, "%lld %s, %.1f a second", static_cast<long long>(frames),
                  frames == 1 ? "frame" : "frames", static_cast<double>(frames) / seconds);
    if (!done || *done <= 0) return rate;
    const long long left = std::llround(seconds * (1 - *done) / *done);
    char time[64];
    std::snprintf(time, sizeof time, ", %lld:%02lld left", left / 60, left % 60);
    return std::string(rate) + time;
}

}  // namespace pxb::tool
