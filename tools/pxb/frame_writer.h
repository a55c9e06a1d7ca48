// The output of a command: a file, or a series of files, in the type and format that its options ask
// for. It is opened with the first frame, so that bad input leaves no trace.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "commands.h"
#include "file_types.h"
#include "frame_source.h"
#include "output_file.h"
#include "series.h"

namespace pxb::tool {

class FrameWriter {
  public:
    explicit FrameWriter(const OutputOptions& to);

    const FileType& type() const { return type_; }
    bool many_frames() const { return series_ || type_.many_frames; }
    std::int64_t frames() const { return frames_; }

    // Every frame will have this format. Refuses, in the name of `field`, what the type cannot hold.
    void Demand(PixelFormat format, std::string_view field);

    // Brings a frame into the format in which it will be written: that demanded, or its own if the
    // type holds it, or the type's first that the library can make of it. In a series its file is
    // written, too: compression takes longer than the rest. Any thread may call this.
    void Prepare(Frame& frame) const;

    // In order, and prepared. A file of a series gets its name.
    void Write(Frame& frame);

    // The end of all frames. Refuses a series of which an older, longer one is left over.
    void Commit();

  private:
    PixelFormat FormatFor(PixelFormat from) const;
    void CheckEndOfSeries() const;

    std::string path_;
    const FileType& type_;
    std::optional<Series> series_;
    std::optional<PixelFormat> wanted_;
    bool unpadded_;
    int quality_;
    std::optional<OutputFile> output_;
    std::int64_t frames_ = 0;
    std::string note_;  // said at the end, where all went well
};

}  // namespace pxb::tool
