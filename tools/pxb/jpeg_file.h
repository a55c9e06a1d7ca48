// JPEG pictures through libjpeg: baseline and progressive, grey (RGB8) and colour (RGB24). Written are
// baseline ones, in which colours are full range and chroma is halved.
#pragma once
#include "file_types.h"

namespace pxb::tool {

Video ReadJpeg(InputFile& input, const RawLayout& layout, const FrameSink& sink);
void WriteJpeg(OutputFile& output, const Video& video, const Picture& picture, std::int64_t number);

}  // namespace pxb::tool
