// BMP pictures, uncompressed: 8 bits with a palette, 24 and 32 bits.
#pragma once
#include "file_types.h"

namespace pxb::tool {

Video ReadBmp(InputFile& input, const RawLayout& layout, const FrameSink& sink);
void WriteBmp(OutputFile& output, const Video& video, const Picture& picture, std::int64_t number);

}  // namespace pxb::tool
