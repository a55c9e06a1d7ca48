#include "frame_source.h"

#include <utility>

#include "error.h"

namespace pxb::tool {
namespace {

std::string ShapeOf(const Video& video) {
    return ToString(video.size) + " " + std::string(FormatName(video.format));
}

std::vector<std::int64_t> NumbersOf(const Series& series, const std::string& path) {
    std::vector<std::int64_t> numbers = series.Existing();
    if (numbers.empty()) throw Error(path, "open", "", "no file has a name like this");
    for (std::size_t i = 1; i < numbers.size(); ++i)
        if (const std::int64_t number = numbers[i - 1] + 1; number != numbers[i])
            throw Error(series.Name(number), "open", "",
                        "is missing in the series, which goes on with " + series.Name(numbers[i]));
    return numbers;
}

}  // namespace

FrameSource::FrameSource(const InputOptions& from)
    : path_(from.path), name_(from.path), layout_(from.layout), series_(Series::Find(from.path)) {
    if (series_) numbers_ = NumbersOf(*series_, path_);
}

std::optional<Frame> FrameSource::Open(const std::string& path) {
    input_.emplace(path);
    bytes_ = input_->remaining();
    type_ = &InputType(*input_, layout_);
    std::optional<Frame> first;
    video_ = type_->read(*input_, layout_, [&](const Video& video, Picture& picture, std::int64_t) {
        first.emplace(Frame{input_->name(), video, std::move(picture)});
        return false;
    });
    return first;
}

std::optional<Frame> FrameSource::NextOfFile() {
    std::optional<Frame> frame;
    if (taken_ == 0) {
        frame = Open(path_);
        name_ = input_->name();
    } else if (type_->next) {
        std::optional<Picture> picture = type_->next(*input_, video_, taken_);
        if (picture) frame.emplace(Frame{input_->name(), video_, std::move(*picture)});
    }
    if (frame && bytes_ && *bytes_ > 0)
        frame->done = 1 - static_cast<double>(*input_->remaining()) / static_cast<double>(*bytes_);
    return frame;
}

std::optional<Frame> FrameSource::NextOfSeries() {
    const auto index = static_cast<std::size_t>(taken_);
    if (index == numbers_.size()) return std::nullopt;
    const Video first = video_;
    std::optional<Frame> frame = Open(series_->Name(numbers_[index]));
    if (!frame) throw Error(input_->name(), "frame", "0", "the file has 0 frames");
    if (type_->next && type_->next(*input_, video_, 1))
        throw Error(input_->name(), "frame", "1", "files of a series hold one frame each");
    if (index > 0 && ShapeOf(video_) != ShapeOf(first))
        throw Error(input_->name(), "frame", ShapeOf(video_),
                    "the series began with " + ShapeOf(first));
    input_.reset();  // it may be the file that is written next
    frame->done = static_cast<double>(index + 1) / static_cast<double>(numbers_.size());
    return frame;
}

std::optional<Frame> FrameSource::Next() {
    std::optional<Frame> frame = series_ ? NextOfSeries() : NextOfFile();
    if (frame) ++taken_;
    return frame;
}

}  // namespace pxb::tool
