// YUV samples of 0 to 255, as JPEG pictures and some cameras have them, in the range that the library
// computes in: luma 16 to 235, chroma 16 to 240.
#pragma once
#include "picture.h"

namespace pxb::tool {

// Rounds to nearest. For the planar formats I420, YV12 and YUV422, and for AYUV32.
void ToStudioRange(Picture& picture);

}  // namespace pxb::tool
