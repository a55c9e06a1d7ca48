// Scaling, one call of the library a picture.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "picture.h"

namespace pxb::tool {

struct Scaling {
    Size size;          // of the new picture
    std::int32_t mode;  // of PxbResize
    // A part of the old picture, and where it goes in the new one, which is black elsewhere.
    std::optional<Rect> from, to;
};

// A mode by name or number, 0 to 6. Refuses others in the name of `option`.
std::int32_t ParseMode(std::string_view option, std::string_view text);

std::string ModeNames();  // with their numbers

// Refuses a part outside the old picture, and formats that the library does not scale, in the name
// of `file`, which holds the old picture.
Picture Resize(std::string_view file, const Picture& picture, const Scaling& scaling);

// Refuses a mode that writes nothing for this format and these sizes.
void CheckMode(std::string_view file, const Picture& picture, const Scaling& scaling);

// Whether the pixels keep their shape.
bool KeepsProportions(const Picture& picture, const Scaling& scaling);

}  // namespace pxb::tool
