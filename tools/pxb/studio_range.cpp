#include "studio_range.h"

#include <array>

namespace pxb::tool {
namespace {

using Table = std::array<std::uint8_t, 256>;

// round(sample * steps / 255) + lowest; chroma has its zero at 128, which must stay.
constexpr Table kLuma = [] {
    Table table{};
    for (int i = 0; i < 256; ++i) table[i] = static_cast<std::uint8_t>(16 + (i * 438 + 255) / 510);
    return table;
}();
constexpr Table kChroma = [] {
    Table table{};
    for (int i = 0; i < 256; ++i) {
        const int away = i < 128 ? 128 - i : i - 128, scaled = (away * 448 + 255) / 510;
        table[i] = static_cast<std::uint8_t>(i < 128 ? 128 - scaled : 128 + scaled);
    }
    return table;
}();

void Apply(const Table& table, std::uint8_t* samples, std::int64_t count, int step = 1) {
    for (std::int64_t i = 0; i < count; ++i) samples[i * step] = table[samples[i * step]];
}

}  // namespace

void ToStudioRange(Picture& picture) {
    const bool planar = picture.format() != PXB_AYUV32;
    for (const Plane& plane : picture.Planes())
        for (std::int64_t y = 0; y < plane.rows; ++y) {
            std::uint8_t* const row = picture.Row(plane, y);
            if (planar) {
                Apply(plane.samples == "Y" ? kLuma : kChroma, row, plane.row_bytes);
                continue;
            }
            Apply(kLuma, row + 1, picture.size().width, 4);
            Apply(kChroma, row + 2, picture.size().width, 4);
            Apply(kChroma, row + 3, picture.size().width, 4);
        }
    RepeatEdges(picture);
}

}  // namespace pxb::tool
