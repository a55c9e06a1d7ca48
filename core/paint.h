// Kernels of the fill: rows and planes of a repeated byte pattern.
#pragma once
#include <cstdint>

namespace pxb {

// A pattern of 1 to 4 bytes.
struct Pattern {
    std::uint8_t bytes[4];
    int size;
};

// Paints `count` repetitions in each of `height` rows that lie `stride` bytes apart; the bytes
// after them stay. Neither count nor height may be negative.
void PaintRows(std::uint8_t* data, std::int32_t stride, const Pattern& pattern, std::int32_t count,
               std::int32_t height);

// Paints `bytes` bytes without gaps; `bytes` may not be negative.
void PaintPlane(std::uint8_t* data, std::uint8_t value, std::int64_t bytes);

}  // namespace pxb
