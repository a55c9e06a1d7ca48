// PNG pictures: RGB8, RGB24 and RGB32 with alpha. png_absent.cpp stands in where libpng is missing.
#pragma once
#include "file_types.h"

namespace pxb::tool {

Video ReadPng(InputFile& input, const RawLayout& layout, const FrameSink& sink);
void WritePng(OutputFile& output, const Video& video, const Picture& picture, std::int64_t number);

}  // namespace pxb::tool
