// A line on the terminal that says how far a video is. Where standard error is none, it says nothing.
#pragma once
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace pxb::tool {

class Progress {
  public:
    Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();  // clears the line

    // `frames` are written, with which this part of the input is done: 0 to 1.
    void Show(std::int64_t frames, std::optional<double> done);

  private:
    using Clock = std::chrono::steady_clock;

    bool terminal_;
    Clock::time_point start_, next_;
    std::size_t length_ = 0;  // of the line that stands there
};

// "120 frames, 40.0 a second, 0:07 left".
std::string ProgressLine(std::int64_t frames, double seconds, std::optional<double> done);

}  // namespace pxb::tool
