// BMP pictures of 1, 4 and 8 bits with a palette, run-length encoded or not, and of 16, 24 and 32
// bits. Written are 8 bits (grey), 24 and 32.
#pragma once
#include "file_types.h"

namespace pxb::tool {

Video ReadBmp(InputFile& input, const RawLayout& layout, const FrameSink& sink);
void WriteBmp(OutputFile& output, const Video& video, const Picture& picture, std::int64_t number);

}  // namespace pxb::tool
