// Sizes and rectangles as people write them.
#pragma once
#include <string>
#include <string_view>

#include "PxbLib.h"
#include "formats.h"

namespace pxb::tool {

// "640x480". Refuses other text, and extents below 1, in the name of `option`.
Size ParseSize(std::string_view option, std::string_view text);

// "L,T,R,B" in pixels, right and bottom exclusive. Refuses other text, and negative numbers.
Rect ParseRect(std::string_view option, std::string_view text);

// "X,Y" in pixels. Refuses other text, and negative numbers.
struct Point {
    std::int32_t x, y;
};
Point ParsePoint(std::string_view option, std::string_view text);

std::string ToString(const Rect& rect);
std::string ToString(Point point);

// Refuses a rectangle that is turned around, or not inside a picture of this size, in the name of
// the picture's file.
void CheckRect(std::string_view file, std::string_view option, const Rect& rect, Size size);

}  // namespace pxb::tool
