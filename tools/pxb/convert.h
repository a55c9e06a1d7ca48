// The library's operations, one call a picture, with answers that people understand.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "geometry.h"
#include "picture.h"

namespace pxb::tool {

// "1 (PXB_UNSUPPORTED)".
std::string ResultName(std::int32_t result);

// Whether the library converts this pair of formats.
bool Converts(PixelFormat from, PixelFormat to);

// What to do about a refused pair: "; convert to YUY2 first". Empty where nothing helps.
std::string Advice(PixelFormat from, PixelFormat to);

// `picture` in another format, by one call of PxbColorSpaceConv. Unpadded, the library is told of an
// odd width as it is.
Picture Convert(std::string_view file, const Picture& picture, PixelFormat to,
                bool unpadded = false);

// One channel as grey, by one call of PxbChannelGet.
Picture GetChannel(std::string_view file, const Picture& picture, int channel);

// Blends `part` of `overlay` over `picture`, which has the same format, from the pixel `at` on, by one
// call of PxbAlphaBlend. `mask` may be null for RGB32.
void Blend(std::string_view file, Picture& picture, const Picture& overlay, const Picture* mask,
           Point at, const Rect& part);

}  // namespace pxb::tool
