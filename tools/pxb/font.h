// A font of 5 x 7 dots for the test card: capitals, digits and a few signs.
#pragma once
#include <string_view>

namespace pxb::tool {

inline constexpr int kGlyphWidth = 5, kGlyphHeight = 7, kGlyphAdvance = 6;

// Seven rows of five characters, '#' for a dot; empty for a character without a glyph.
std::string_view GlyphOf(char letter);

}  // namespace pxb::tool
