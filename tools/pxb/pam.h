// PAM, the netpbm format with alpha: grey or red, green, blue, each with alpha or without.
#pragma once
#include "file_types.h"

namespace pxb::tool {

Video ReadPam(InputFile& input, const RawLayout&, const FrameSink& sink);
void WritePam(OutputFile& output, const Video& video, const Picture& picture, std::int64_t number);

}  // namespace pxb::tool
