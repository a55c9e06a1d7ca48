// The commands that write pictures: frames come in, go through the library once, and go out.
#include "commands.h"

#include "convert.h"
#include "error.h"
#include "geometry.h"
#include "overlay.h"
#include "testcard.h"

namespace pxb::tool {
namespace {

// The output, opened with the first frame, so that bad input leaves no trace.
class FrameWriter {
  public:
    explicit FrameWriter(const OutputOptions& to)
        : path_(to.path),
          type_(OutputType(to.path, to.type)),
          wanted_(to.format),
          unpadded_(to.unpadded) {
        if (wanted_) CheckFormat(*wanted_, "--to");
    }

    const FileType& type() const { return type_; }
    std::int64_t frames() const { return frames_; }

    void CheckFormat(PixelFormat format, std::string_view field) const {
        if (type_.Holds(format)) return;
        std::string held;
        for (const PixelFormat known : type_.formats)
            held.append(held.empty() ? "" : ", ").append(FormatName(known));
        throw Error(path_, field, FormatName(format),
                    "a " + std::string(type_.description) + " holds " + held);
    }

    // The format asked for, or the picture's own if the type holds it, or the type's first that the
    // library can make of it.
    PixelFormat FormatFor(PixelFormat from) const {
        if (wanted_) return *wanted_;
        if (const std::optional<PixelFormat> named = FormatByExtension(path_)) return *named;
        if (type_.Holds(from)) return from;
        for (const PixelFormat format : type_.formats)
            if (Converts(from, format)) return format;
        return type_.formats.front();
    }

    void Write(Video video, const Picture& picture) {
        if (!output_) output_.emplace(path_);
        if (video.format != picture.format()) {
            video.format = picture.format();
            video.comments.clear();
        }
        video.size = picture.size();
        type_.write(*output_, video, picture, frames_++);
    }

    void WriteConverted(std::string_view file, const Video& video, const Picture& picture) {
        const PixelFormat format = FormatFor(picture.format());
        if (format == picture.format())
            Write(video, picture);
        else
            Write(video, Convert(file, picture, format, unpadded_));
    }

    void Commit() { output_->Commit(); }

  private:
    std::string path_;
    const FileType& type_;
    std::optional<PixelFormat> wanted_;
    bool unpadded_;
    std::optional<OutputFile> output_;
    std::int64_t frames_ = 0;
};

// Calls step(file, video, picture) for the frames that the writer wants: all, the first if its type
// holds only one, or the one that was asked for.
template <class Step>
void ForFrames(const InputOptions& from, FrameWriter& writer, Step step) {
    InputFile input(from.path);
    const bool all = writer.type().many_frames && !from.frame;
    const std::int64_t first = from.frame.value_or(0);
    std::int64_t seen = 0;
    InputType(input, from.layout)
        .read(input, from.layout,
              [&](const Video& video, const Picture& picture, std::int64_t number) {
                  ++seen;
                  if (number < first) return true;
                  step(input.name(), video, picture);
                  return all;
              });
    if (writer.frames() == 0)
        throw Error(input.name(), "frame", std::to_string(first),
                    "the file has " + std::to_string(seen) + (seen == 1 ? " frame" : " frames") +
                        ", counted from 0");
}

// Width to height of a pixel, as "16:15". Turned by other angles pixels that are not square have no
// such ratio: "0:0", unknown.
std::string TurnedAspect(const std::string& aspect, std::int32_t angle_degrees) {
    const std::size_t colon = aspect.find(':');
    if (colon == std::string::npos || angle_degrees % 180 == 0) return aspect;
    const std::string width = aspect.substr(0, colon), height = aspect.substr(colon + 1);
    if (width == height) return aspect;
    return IsQuarter(angle_degrees) ? height + ":" + width : "0:0";
}

}  // namespace

void PaintTestCards(const OutputOptions& to, Size size, int frames) {
    FrameWriter writer(to);
    if (frames > 1 && !writer.type().many_frames)
        throw Error(to.path, "--frames", std::to_string(frames),
                    "a " + std::string(writer.type().description) + " holds one frame");
    CheckSize("test card", PXB_I420, size);
    const Video video{PXB_I420, size, "25:1", "p", "1:1"};
    for (int number = 0; number < frames; ++number)
        writer.WriteConverted("test card", video, PaintTestCard(size, number, frames));
    writer.Commit();
}

void ConvertFile(const InputOptions& from, const OutputOptions& to) {
    FrameWriter writer(to);
    ForFrames(from, writer,
              [&](const std::string& file, const Video& video, const Picture& picture) {
                  writer.WriteConverted(file, video, picture);
              });
    writer.Commit();  // the input is closed by now: it may be the file that this replaces
}

void FlipFile(const InputOptions& from, const OutputOptions& to, Mirror mirror,
              const std::optional<Rect>& part) {
    FrameWriter writer(to);
    ForFrames(from, writer,
              [&](const std::string& file, const Video& video, const Picture& picture) {
                  writer.WriteConverted(file, video, Flip(file, picture, mirror, part));
              });
    writer.Commit();
}

void ExtractChannel(const InputOptions& from, const OutputOptions& to, int channel) {
    FrameWriter writer(to);
    writer.CheckFormat(PXB_RGB8, "channel");
    ForFrames(from, writer,
              [&](const std::string& file, const Video& video, const Picture& picture) {
                  writer.Write(video, GetChannel(file, picture, channel));
              });
    writer.Commit();
}

void BlendOver(const InputOptions& background, const OverlayOptions& overlay,
               const OutputOptions& to) {
    FrameWriter writer(to);
    Overlay logo(overlay);
    ForFrames(background, writer,
              [&](const std::string& file, const Video& video, const Picture& picture) {
                  writer.WriteConverted(file, video, logo.Over(file, picture));
              });
    writer.Commit();
}

void ResizeFile(const InputOptions& from, const OutputOptions& to, const Scaling& scaling) {
    FrameWriter writer(to);
    if (scaling.to) CheckRect(to.path, "--to-rect", *scaling.to, scaling.size);
    ForFrames(from, writer, [&](const std::string& file, Video video, const Picture& picture) {
        const Picture scaled = Resize(file, picture, scaling);
        if (writer.frames() == 0) CheckMode(file, picture, scaling);
        if (!video.aspect.empty() && !KeepsProportions(picture, scaling))
            video.aspect = "0:0";  // unknown
        writer.WriteConverted(file, video, scaled);
    });
    writer.Commit();
}

void RotateFile(const InputOptions& from, const OutputOptions& to, const Rotation& rotation) {
    FrameWriter writer(to);
    ForFrames(from, writer, [&](const std::string& file, Video video, const Picture& picture) {
        video.aspect = TurnedAspect(video.aspect, rotation.angle_degrees);
        writer.WriteConverted(file, video, Rotate(file, picture, rotation));
    });
    writer.Commit();
}

}  // namespace pxb::tool
