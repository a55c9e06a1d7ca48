#include "scale/filter.h"

namespace pxb {
namespace {

constexpr int kNearestMode = 0, kBilinearMode = 1, kFadedMode = 2, kHalvingMode = 3,
              kFadedHalvingMode = 4, kShrinkingMode = 6;

bool IsAnyExtent(const ScaleExtents& e, std::int32_t n) {
    return e.dst_width == n || e.dst_height == n || e.src_width == n || e.src_height == n;
}

bool IsEmpty(const ScaleExtents& e) {
    return e.dst_width <= 0 || e.dst_height <= 0 || e.src_width <= 0 || e.src_height <= 0;
}

bool Shrinks(const ScaleExtents& e) {
    return e.src_width > e.dst_width && e.src_height > e.dst_height;
}

bool IsHalvedAtLeast(const ScaleExtents& e) {
    return e.src_width >= std::int64_t{2} * e.dst_width &&
           e.src_height >= std::int64_t{2} * e.dst_height;
}

// The order matters: a mode 4 that does not halve fades, and an extent of 1 wins over both.
int Settle(std::int32_t mode, const ScaleExtents& extents) {
    if (mode < kNearestMode || mode > kShrinkingMode) mode = kBilinearMode;
    if (!IsHalvedAtLeast(extents)) {
        if (mode == kFadedHalvingMode) mode = kFadedMode;
        if (mode == kHalvingMode) mode = kBilinearMode;
    }
    return IsAnyExtent(extents, 1) ? kNearestMode : mode;
}

// 24-bit and 32-bit pixels have no routine for halving modes, nor for mode 6 where it does not
// shrink: callers depend on their destination staying as it is. 8-bit pixels have, and mixed depths
// take the bilinear one.
Filter FilterOfSettled(int mode, const ScaleExtents& extents, int src_bytes, int dst_bytes) {
    if (mode == kNearestMode) return Filter::kNearest;
    if (mode == kFadedMode) return Filter::kFaded;
    const bool halves = mode == kHalvingMode || mode == kFadedHalvingMode;
    if (!halves && mode != kShrinkingMode) return Filter::kBilinear;
    if (src_bytes != dst_bytes) return Filter::kBilinear;
    if (mode == kShrinkingMode && Shrinks(extents)) return Filter::kSpline;
    if (src_bytes != 1) return Filter::kNothing;
    return halves ? Filter::kSpline : Filter::kBilinear;
}

bool HasRoutine(int src_bytes, int dst_bytes) {
    const auto is_color = [](int bytes) { return bytes == 3 || bytes == 4; };
    return (src_bytes == 1 && dst_bytes == 1) || (is_color(src_bytes) && is_color(dst_bytes));
}

}  // namespace

Filter FilterOfPixels(std::int32_t mode, const ScaleExtents& extents, int src_bytes,
                      int dst_bytes) {
    if (IsEmpty(extents) || !HasRoutine(src_bytes, dst_bytes)) return Filter::kNothing;
    return FilterOfSettled(Settle(mode, extents), extents, src_bytes, dst_bytes);
}

Filter FilterOfPlanes(std::int32_t mode, const ScaleExtents& luma) {
    return FilterOfPixels(mode, luma, 1, 1);
}

Filter FilterOfPlane(Filter filter, const ScaleExtents& plane) {
    if (IsEmpty(plane)) return Filter::kNothing;
    return IsAnyExtent(plane, 1) ? Filter::kNearest : filter;
}

}  // namespace pxb
