// Text from outside, such as file names and headers, for a terminal, which obeys control characters.
#pragma once
#include <string>
#include <string_view>

namespace pxb::tool {

// `text` as one line of valid UTF-8, with a ? for each byte that is not a part of a printable
// character.
std::string Printable(std::string_view text);

}  // namespace pxb::tool
