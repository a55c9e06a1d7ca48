// Numbers out of text: the whole text, in a range, or nothing.
#pragma once
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace pxb::tool {

template <class Number>
std::optional<Number> ParseNumber(std::string_view text, Number least, Number most) {
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end || number < least || number > most) return std::nullopt;
    return number;
}

}  // namespace pxb::tool
