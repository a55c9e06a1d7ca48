// Raw frames, and the frames inside Y4M, which look the same.
#include "raw.h"

#include "error.h"

namespace pxb::tool {
namespace {

Video RawVideo(const InputFile& input, const RawLayout& layout) {
    const std::optional<PixelFormat> format =
        layout.format ? layout.format : FormatByExtension(input.name());
    if (!layout.size)
        throw Error(input.name(), layout.size_option, "",
                    "raw frames need " + std::string(layout.size_option) + " WxH");
    if (!format)
        throw Error(input.name(), "--format", "",
                    "raw frames need --format, one of " + FormatNames());
    return {*format, *layout.size};
}

// What files take in one go: rows that follow one another without a gap are one.
struct Rows {
    std::int64_t count, bytes;
};

Rows RowsOf(const Plane& plane) {
    if (plane.row_bytes == plane.stride) return {1, plane.row_bytes * plane.rows};
    return {plane.rows, plane.row_bytes};
}

}  // namespace

Picture ReadFrame(InputFile& input, const Video& video, std::int64_t number) {
    const std::string field = "frame " + std::to_string(number);
    CheckSize(input.name(), video.format, video.size);
    input.Require(FrameBytes(video.format, video.size), field);
    Picture picture(input.name(), video.format, video.size, Picture::Contents::kAny);
    for (const Plane& plane : picture.Planes()) {
        const Rows rows = RowsOf(plane);
        for (std::int64_t y = 0; y < rows.count; ++y)
            input.Read(picture.Row(plane, y), rows.bytes, field);
    }
    RepeatEdges(picture);
    return picture;
}

void WriteFrame(OutputFile& output, const Picture& picture) {
    for (const Plane& plane : picture.Planes()) {
        const Rows rows = RowsOf(plane);
        for (std::int64_t y = 0; y < rows.count; ++y)
            output.Write(picture.Row(plane, y), rows.bytes);
    }
}

Video ReadRaw(InputFile& input, const RawLayout& layout, const FrameSink& sink) {
    const Video video = RawVideo(input, layout);
    CheckSize(input.name(), video.format, video.size);
    const std::int64_t frame_bytes = FrameBytes(video.format, video.size);
    if (input.remaining() && (input.AtEnd() || *input.remaining() % frame_bytes != 0))
        throw Error(input.name(), "file size", std::to_string(*input.remaining()) + " bytes",
                    "not a whole number of frames of " + std::to_string(frame_bytes) + " bytes (" +
                        ToString(video.size) + " " + std::string(FormatName(video.format)) + ")");
    for (std::int64_t number = 0;; ++number) {
        std::optional<Picture> picture = NextRawFrame(input, video, number);
        if (!picture || !sink(video, *picture, number)) return video;
    }
}

std::optional<Picture> NextRawFrame(InputFile& input, const Video& video, std::int64_t number) {
    if (number > 0 && input.AtEnd()) return std::nullopt;  // no file of raw frames is empty
    return ReadFrame(input, video, number);
}

void WriteRaw(OutputFile& output, const Video&, const Picture& picture, std::int64_t) {
    WriteFrame(output, picture);
}

}  // namespace pxb::tool
