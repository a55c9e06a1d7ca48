// Which pixels of a destination row lie on the source, found from the row's ends.
#pragma once
#include <cstdint>

#include "core/doubles.h"

namespace pxb {

// How a coordinate of the source moves from one destination pixel to the next. The tolerance is ten
// times that of the cosine.
enum class Direction {
    kResting,
    kForward,
    kBackward
};
constexpr PXB_INLINE Direction DirectionOf(double step) {
    if (step > 0.001) return Direction::kForward;
    return step < -0.001 ? Direction::kBackward : Direction::kResting;
}

// One coordinate along a destination row: where its first pixel lies in the source, where the pixel
// after its last would lie, and how far it is from one pixel to the next.
struct Track {
    double start, end, step;
    Direction direction;
    std::int32_t extent;  // of the source in this coordinate
};

// Pixels at one end of a row: those wholly outside the source, and these together with the edge band
// next to them, whose points lie less than a pixel outside or on the source's last pixel.
struct Skips {
    std::uint32_t outside = 0, all = 0;
};

struct RowSpan {
    Skips leading, trailing;
};

namespace PXB_DOUBLES {

// False if nothing of a row of `width` pixels is written. A resting coordinate skips nothing. The
// floating-point unit must be in the state of FloatGuard.
bool RowSpanClip(const Track& u, const Track& v, std::int32_t width, RowSpan* span);

}  // namespace PXB_DOUBLES
}  // namespace pxb
