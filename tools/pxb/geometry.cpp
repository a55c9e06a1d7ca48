#include "geometry.h"

#include <cstdint>
#include <optional>

#include "error.h"
#include "numbers.h"

namespace pxb::tool {

Size ParseSize(std::string_view option, std::string_view text) {
    const std::size_t cross = text.find_first_of("xX");
    if (cross != std::string_view::npos) {
        const auto width = ParseNumber(text.substr(0, cross), 1, INT32_MAX);
        const auto height = ParseNumber(text.substr(cross + 1), 1, INT32_MAX);
        if (width && height) return {*width, *height};
    }
    throw Error("", option, text, "should be WxH, two numbers from 1 on, such as 640x480");
}

Rect ParseRect(std::string_view option, std::string_view text) {
    constexpr int kEdges = 4;
    std::int32_t edges[kEdges];
    std::string_view rest = text;
    for (int i = 0; i < kEdges; ++i) {
        const bool last = i == kEdges - 1;
        const std::size_t end = last ? rest.size() : rest.find(',');
        const auto edge = end == std::string_view::npos
                              ? std::nullopt
                              : ParseNumber(rest.substr(0, end), 0, INT32_MAX);
        if (!edge)
            throw Error("", option, text,
                        "should be L,T,R,B, four numbers from 0 on, such as 0,0,640,480");
        edges[i] = *edge;
        if (!last) rest.remove_prefix(end + 1);
    }
    return {edges[0], edges[1], edges[2], edges[3]};
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
