// PNM pictures: P2 and P5 (grey, RGB8), P3 and P6 (colour, RGB24), up to 16 bits a sample.
#pragma once
#include "file_types.h"

namespace pxb::tool {

Video ReadPnm(InputFile& input, const RawLayout& layout, const FrameSink& sink);
void WritePnm(OutputFile& output, const Video& video, const Picture& picture, std::int64_t number);

}  // namespace pxb::tool
