#include "printable.h"

#include <cstdint>

namespace pxb::tool {
namespace {

// Line and paragraph separators, and what turns the direction of letters around.
bool Misleads(std::uint32_t code) {
    return (code >= 0x2028 && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

// Bytes of the printable character with which `text`, not empty, begins; 0: there is none.
std::size_t CharacterBytes(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    if (byte(0) < 0x80) return byte(0) >= ' ' && byte(0) != 0x7f;
    const std::size_t count = byte(0) >= 0xf0 ? 4 : byte(0) >= 0xe0 ? 3 : 2;
    if (byte(0) < 0xc0 || byte(0) > 0xf4 || text.size() < count) return 0;
    std::uint32_t code = byte(0) & 0x7fu >> count;
    for (std::size_t i = 1; i < count; ++i) {
        if ((byte(i) & 0xc0) != 0x80) return 0;
        code = code << 6 | (byte(i) & 0x3fu);
    }
    // Below these a character has a shorter form; U+0080 to U+009F are control characters.
    constexpr std::uint32_t kLeast[] = {0, 0, 0xa0, 0x800, 0x10000};
    const bool surrogate = code >= 0xd800 && code < 0xe000;
    return code < kLeast[count] || code > 0x10ffff || surrogate || Misleads(code) ? 0 : count;
}

}  // namespace

std::string Printable(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const std::size_t bytes = CharacterBytes(text);
        if (bytes == 0)
            line += '?';
        else
            line += text.substr(0, bytes);
        text.remove_prefix(bytes == 0 ? 1 : bytes);
    }
    return line;
}

}  // namespace pxb::tool
