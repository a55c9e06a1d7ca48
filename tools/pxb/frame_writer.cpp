#include "frame_writer.h"

#include <cstdio>

#include "convert.h"
#include "error.h"
#include "printable.h"

namespace pxb::tool {
namespace {

bool HasFourthBytes(PixelFormat format) {
    return format == PXB_RGB32 || format == PXB_AYUV32;
}

bool IsInterlaced(const Video& video) {
    const std::string& word = video.interlacing;
    return word == "t" || word == "b" || word == "m";
}

}  // namespace

FrameWriter::FrameWriter(const OutputOptions& to)
    : path_(to.path),
      type_(OutputType(to.path, to.type)),
      series_(Series::Find(to.path)),
      unpadded_(to.unpadded),
      quality_(to.quality.value_or(kDefaultQuality)) {
    if (to.format) Demand(*to.format, "--to");
    if (!wanted_) wanted_ = FindFormatOrCode(to.type);
    if (to.quality && type_.name != "jpeg")
        throw Error(path_, "--quality", std::to_string(*to.quality),
                    "is for JPEG, and this is a " + std::string(type_.description));
}

void FrameWriter::Demand(PixelFormat format, std::string_view field) {
    wanted_ = format;
    if (type_.Holds(format)) return;
    std::string held;
    for (const PixelFormat known : type_.formats)
        held.append(held.empty() ? "" : ", ").append(FormatName(known));
    throw Error(path_, field, FormatName(format),
                "a " + std::string(type_.description) + " holds " + held);
}

PixelFormat FrameWriter::FormatFor(PixelFormat from) const {
    if (wanted_) return *wanted_;
    if (const std::optional<PixelFormat> named = FormatByExtension(path_)) return *named;
    if (type_.Holds(from)) return from;
    for (const PixelFormat format : type_.formats)
        if (Converts(from, format)) return format;
    return type_.formats.front();
}

void FrameWriter::Prepare(Frame& frame) const {
    const PixelFormat format = FormatFor(frame.picture.format());
    const bool had_alpha = frame.video.alpha.value_or(false);
    const bool changes = frame.video.format != format ||
                         ToString(frame.video.size) != ToString(frame.picture.size());
    if (changes && frame.video.format == PXB_I420 && IsInterlaced(frame.video))
        frame.note = "the two fields of its 4:2:0 frames are taken for one picture";
    if (format != frame.picture.format())
        frame.picture = Convert(frame.file, frame.picture, format, unpadded_);
    if (frame.video.format != format) {
        if (!HasFourthBytes(frame.video.format) || !HasFourthBytes(format))
            frame.video.alpha = false;
        frame.video.format = format;
        frame.video.comments.clear();
    }
    frame.video.size = frame.picture.size();
    frame.video.quality = quality_;
    if (had_alpha && !(type_.keeps_alpha && *frame.video.alpha)) frame.note = "its alpha is lost";
    if (!series_) return;
    frame.output = std::make_unique<OutputFile>(series_->Name(frame.number));
    type_.write(*frame.output, frame.video, frame.picture, 0);
}

void FrameWriter::Write(Frame& frame) {
    if (note_.empty()) note_ = frame.note;
    if (series_) {
        frame.output->Commit();
    } else {
        if (!output_) output_.emplace(path_);
        type_.write(*output_, frame.video, frame.picture, frames_);
    }
    ++frames_;
}

void FrameWriter::Commit() {
    if (output_) output_->Commit();
    CheckEndOfSeries();
    if (!note_.empty())
        std::fprintf(stderr, "pxb: note: %s: %s\n", Printable(path_).c_str(), note_.c_str());
}

void FrameWriter::CheckEndOfSeries() const {
    if (!series_) return;
    const std::vector<std::int64_t> numbers = series_->Existing();
    if (!numbers.empty() && numbers.back() >= frames_)
        throw Error(
            series_->Name(numbers.back()), "series", "",
            "is left over of a longer one; this one ends with " + series_->Name(frames_ - 1));
}

}  // namespace pxb::tool
