#include "transform/row_span.h"

namespace pxb::PXB_DOUBLES {
namespace {

enum class Bound {
    kIncluded,
    kExcluded
};

bool IsBefore(double c, double bound, Bound kind) {
    return c < bound || (kind == Bound::kIncluded && c == bound);
}

// Counts on from c.
PXB_NOINLINE std::uint32_t CountOn(double bound, Bound kind, double c, double step,
                                   std::uint32_t most) {
    // A rounding is at most 2^-53 of the largest number. So where the product is below 10^10 steps,
    // all of them move the count by less than 10^-5.
    constexpr double kRoundings = 1e10, kNear = 1e-5;
    const double steps = (bound - c) / step, largest = Larger(-c, bound < 0 ? -bound : bound);
    if (steps * largest < kRoundings * step) {
        if (steps > static_cast<double>(most)) return most;
        const auto whole = Truncate(steps);
        const double rest = steps - static_cast<double>(whole);
        if (rest > kNear && rest < 1 - kNear)
            return Smaller(static_cast<std::uint32_t>(whole) + 1, most);
    }
    std::uint32_t count = 0;
    for (; count < most && IsBefore(c, bound, kind); c += step) ++count;
    return count;
}

// How many of c, c + step, (c + step) + step, ... come before the bound; at most `most`. Each sum is
// rounded, and where one falls on the bound its last bit decides. So the sums are walked, save where
// a division shows that none comes near the bound.
PXB_INLINE std::uint32_t CountBefore(double bound, Bound kind, double c, double step,
                                     std::uint32_t most) {
    constexpr std::uint32_t kFew =
        4;  // sums that take no longer than a division; `most` is not less
    for (std::uint32_t count = 0; count < kFew; ++count, c += step)
        if (!IsBefore(c, bound, kind)) return count;
    return kFew + CountOn(bound, kind, c, step, most - kFew);
}

// From c inward, where the source begins at 0.
Skips FromBelow(double c, double step, std::uint32_t most) {
    return {CountBefore(-1.0, Bound::kIncluded, c, step, most),
            CountBefore(0.0, Bound::kExcluded, c, step, most)};
}

// From c inward, where the source ends. In negative numbers, which round alike.
Skips FromAbove(double c, double step, double extent, std::uint32_t most) {
    return {CountBefore(-extent, Bound::kIncluded, -c, -step, most),
            CountBefore(1.0 - extent, Bound::kIncluded, -c, -step, most)};
}

// The first position counted from the end lies past the row.
Skips WithoutFirst(Skips skips) {
    return {skips.outside - (skips.outside > 0), skips.all - (skips.all > 0)};
}

RowSpan Clip(const Track& track, std::uint32_t most) {
    switch (track.direction) {
        case Direction::kForward:
            return {FromBelow(track.start, track.step, most),
                    WithoutFirst(FromAbove(track.end, -track.step, track.extent, most))};
        case Direction::kBackward:
            return {FromAbove(track.start, track.step, track.extent, most),
                    WithoutFirst(FromBelow(track.end, -track.step, most))};
        default:
            return {};
    }
}

Skips LargerOf(Skips a, Skips b) {
    return {Larger(a.outside, b.outside), Larger(a.all, b.all)};
}

}  // namespace

PXB_NOINLINE bool RowSpanClip(const Track& u, const Track& v, std::int32_t width, RowSpan* span) {
    const auto columns = static_cast<std::uint32_t>(width),
               most = columns + 2;  // then it is decided
    const RowSpan a = Clip(u, most), b = Clip(v, most);
    *span = {LargerOf(a.leading, b.leading), LargerOf(a.trailing, b.trailing)};
    return span->leading.all <= columns && span->trailing.all <= columns - span->leading.all;
}

}  // namespace pxb::PXB_DOUBLES
