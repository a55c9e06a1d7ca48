// Run-length encoded pixels of BMP files.
#pragma once
#include <cstdint>
#include <vector>

#include "formats.h"
#include "input_file.h"

namespace pxb::tool {

// Indices into the palette, a byte each, bottom row first; `bits` of a stored index are 4 or 8. What
// the file skips is 0. Takes memory in proportion to what the file can hold.
std::vector<std::uint8_t> ReadBmpRuns(InputFile& input, Size size, int bits);

}  // namespace pxb::tool
