// Raw frames: nothing but pixels, rows without gaps, one frame after the other.
#pragma once
#include "file_types.h"

namespace pxb::tool {

Video ReadRaw(InputFile& input, const RawLayout& layout, const FrameSink& sink);
std::optional<Picture> NextRawFrame(InputFile& input, const Video& video, std::int64_t number);
void WriteRaw(OutputFile& output, const Video& video, const Picture& picture, std::int64_t number);

// One frame of `video`, of which nothing has been read.
Picture ReadFrame(InputFile& input, const Video& video, std::int64_t number);
void WriteFrame(OutputFile& output, const Picture& picture);

}  // namespace pxb::tool
