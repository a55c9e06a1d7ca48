// YUV4MPEG2 video: a line of parameters, then each frame behind a line "FRAME".
#pragma once
#include "file_types.h"

namespace pxb::tool {

Video ReadY4m(InputFile& input, const RawLayout& layout, const FrameSink& sink);
std::optional<Picture> NextY4mFrame(InputFile& input, const Video& video, std::int64_t number);
void WriteY4m(OutputFile& output, const Video& video, const Picture& picture, std::int64_t number);

}  // namespace pxb::tool
