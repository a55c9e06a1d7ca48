// The library's mirrors, one call a picture.
#pragma once
#include <optional>
#include <string_view>

#include "picture.h"

namespace pxb::tool {

enum class Mirror {
    kHorizontal,  // left to right
    kVertical,    // top to bottom
};

// A part of the picture, or all of it. A whole picture of odd size that shares chroma between the
// columns or rows that change sides shows its repeated edge first and loses the other one.
Picture Flip(std::string_view file, const Picture& picture, Mirror mirror,
             const std::optional<Rect>& part);

}  // namespace pxb::tool
