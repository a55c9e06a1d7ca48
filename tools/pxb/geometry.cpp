#include "geometry.h"

#include <array>
#include <cstdint>
#include <optional>

#include "error.h"
#include "numbers.h"

namespace pxb::tool {
namespace {

// Separated by commas.
template <std::size_t kCount>
std::optional<std::array<std::int32_t, kCount>> ParseNumbers(std::string_view text) {
    std::array<std::int32_t, kCount> numbers;
    for (std::size_t i = 0; i < kCount; ++i) {
        const bool last = i + 1 == kCount;
        const std::size_t end = last ? text.size() : text.find(',');
        if (end == std::string_view::npos) return std::nullopt;
        const auto number = ParseNumber(text.substr(0, end), 0, INT32_MAX);
        if (!number) return std::nullopt;
        numbers[i] = *number;
        if (!last) text.remove_prefix(end + 1);
    }
    return numbers;
}

}  // namespace

Size ParseSize(std::string_view option, std::string_view text) {
    const std::size_t cross = text.find_first_of("xX");
    if (cross != std::string_view::npos) {
        const auto width = ParseNumber(text.substr(0, cross), 1, INT32_MAX);
        const auto height = ParseNumber(text.substr(cross + 1), 1, INT32_MAX);
        if (width && height) return {*width, *height};
    }
    throw Error("", option, text,
                "should be WxH, two numbers from 1 to 2147483647, such as 640x480");
}

Rect ParseRect(std::string_view option, std::string_view text) {
    const auto edges = ParseNumbers<4>(text);
    if (edges) return {(*edges)[0], (*edges)[1], (*edges)[2], (*edges)[3]};
    throw Error("", option, text,
                "should be L,T,R,B, four numbers from 0 to 2147483647, such as 0,0,640,480");
}

Point ParsePoint(std::string_view option, std::string_view text) {
    if (const auto numbers = ParseNumbers<2>(text)) return {(*numbers)[0], (*numbers)[1]};
    throw Error("", option, text, "should be X,Y, two numbers from 0 to 2147483647, such as 16,16");
}

std::string ToString(Point point) {
    return std::to_string(point.x) + "," + std::to_string(point.y);
}

std::string ToString(const Rect& rect) {
    return std::to_string(rect.left) + "," + std::to_string(rect.top) + "," +
           std::to_string(rect.right) + "," + std::to_string(rect.bottom);
}

void CheckRect(std::string_view file, std::string_view option, const Rect& rect, Size size) {
    if (rect.left <= rect.right && rect.right <= size.width && rect.top <= rect.bottom &&
        rect.bottom <= size.height)
        return;
    throw Error(file, option, ToString(rect),
                "is L,T,R,B, and not a part of a picture of " + ToString(size));
}

}  // namespace pxb::tool
