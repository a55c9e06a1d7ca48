// PNM pictures: black and white (read only) and grey as RGB8, colour as RGB24, up to 16 bits a sample.
#pragma once
#include "file_types.h"

namespace pxb::tool {

Video ReadPnm(InputFile& input, const RawLayout& layout, const FrameSink& sink);
void WritePnm(OutputFile& output, const Video& video, const Picture& picture, std::int64_t number);

}  // namespace pxb::tool
