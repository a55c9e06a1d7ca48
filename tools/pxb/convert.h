// The library's conversions, one call a picture, with answers that people understand.
#pragma once
#include <string_view>

#include "picture.h"

namespace pxb::tool {

// Whether the library converts this pair of formats.
bool Converts(PixelFormat from, PixelFormat to);

// `picture` in another format, by one call of PxbColorSpaceConv.
Picture Convert(std::string_view file, const Picture& picture, PixelFormat to);

// One channel as grey, by one call of PxbChannelGet.
Picture GetChannel(std::string_view file, const Picture& picture, int channel);

}  // namespace pxb::tool
