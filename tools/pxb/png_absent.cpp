// PNG for builds without libpng: an answer instead of a picture.
#include "error.h"
#include "png_file.h"

namespace pxb::tool {

Video ReadPng(InputFile& input, const RawLayout&, const FrameSink&) {
    throw Error(input.name(), "file type", "png", "this build has no PNG support");
}

void WritePng(OutputFile& output, const Video&, const Picture&, std::int64_t) {
    throw Error(output.name(), "file type", "png", "this build has no PNG support");
}

}  // namespace pxb::tool
