// The frames of a file, or of a series of files, one after the other.
#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands.h"
#include "file_types.h"
#include "output_file.h"
#include "picture.h"
#include "series.h"

namespace pxb::tool {

struct Frame {
    std::string file;  // whose name failures carry
    Video video;
    Picture picture;
    std::int64_t number = 0;          // of those that are wanted, from 0 on
    std::string note = {};            // for people, about what is lost on the way
    std::optional<double> done = {};  // of all the input, when this had been read: 0 to 1
    std::unique_ptr<OutputFile> output =
        {};  // of a frame in a series: written, without its name yet
};

class FrameSource {
  public:
    // Refuses a series that is empty or has gaps.
    explicit FrameSource(const InputOptions& from);

    const std::string& name() const { return name_; }
    std::int64_t taken() const { return taken_; }

    // Nothing behind the last one. Refuses files of a series that hold more than a frame, or one of
    // another size or format than the first.
    std::optional<Frame> Next();

  private:
    std::optional<Frame> Open(const std::string& path);
    std::optional<Frame> NextOfFile();
    std::optional<Frame> NextOfSeries();

    std::string path_, name_;  // name_: for people
    RawLayout layout_;
    std::optional<Series> series_;
    std::vector<std::int64_t> numbers_;  // of the series
    std::optional<InputFile> input_;
    const FileType* type_ = nullptr;
    Video video_{};
    std::optional<std::int64_t> bytes_;  // of the input, where that is known
    std::int64_t taken_ = 0;
};

}  // namespace pxb::tool
