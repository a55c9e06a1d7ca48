// Turns, one call of the library a picture.
#pragma once
#include <cstdint>
#include <optional>
#include <string_view>

#include "picture.h"

namespace pxb::tool {

struct Rotation {
    std::int32_t angle_degrees;
    std::optional<Size> size;  // of the new picture; else that of the old one, turned with it
};

bool IsQuarter(std::int32_t angle_degrees);

// What no pixel falls on is black. Refuses, in the name of `file`, what the library would not turn or
// could not turn safely. A 4:2:0 picture of odd size shows its repeated edge first and loses another.
Picture Rotate(std::string_view file, const Picture& picture, const Rotation& rotation);

}  // namespace pxb::tool
