#include "scale/source_table.h"

namespace pxb::PXB_DOUBLES {
namespace {

// Positions that should be whole may come out a little below.
constexpr double kAlmost = 1e-9;

// Of a fraction; 0 if it is not above 0.
PXB_INLINE Byte WeightOf(double fraction) {
    return fraction > 0 ? static_cast<Byte>(TruncateSmall(fraction * 255 + 0.5)) : Byte{0};
}

constexpr PXB_INLINE SourcePoint Alone(std::int32_t index) {
    return {index, {}};
}
constexpr PXB_INLINE SourcePoint Between(std::int32_t first, Byte weight_of_second) {
    return {first, {0, weight_of_second}};
}

PXB_NOINLINE void FillNearest(SourcePoint* points, std::int32_t count, std::int32_t source) {
    const double step = static_cast<double>(source) / count;
    double position = 0.5 * step;
    for (std::int32_t i = 0; i < count; ++i, position += step) {
        const std::int32_t index = TruncateSmall(position + kAlmost);
        points[i] = Alone(index < source ? index : source - 1);
    }
}

// The pixel at the left or top of a position above -1.
PXB_INLINE std::int32_t IndexAt(double position) {
    return position + kAlmost > 0 ? TruncateSmall(position + kAlmost) : 0;
}

PXB_NOINLINE void FillBilinear(SourcePoint* points, std::int32_t count, std::int32_t source,
                               bool tight) {
    const double step = static_cast<double>(source) / count;
    const double beyond = (source - 1) + step;
    const std::int32_t limit = tight ? source - 2 : source - 1;
    double position = 0.5 * step - 0.5;
    std::int32_t i = 0;
    for (; i < count && position < -step; ++i, position += step) points[i] = Alone(0);
    for (; i < count && position <= beyond; ++i, position += step) {
        const std::int32_t index = IndexAt(position);
        if (index >= limit) break;
        points[i] = Between(index, WeightOf(position - index));
    }
    for (; i < count; ++i) points[i] = Alone(source - 1);
}

PXB_NOINLINE void FillFaded(SourcePoint* points, std::int32_t count, std::int32_t source) {
    const double step = static_cast<double>(source) / count;
    const double beyond = (source - 1) + step;
    double position = 0.5 * step - 0.5;
    std::int32_t i = 0;
    for (; i < count && position < 0; ++i, position += step)
        points[i] = Between(-1, position < -step ? Byte{0} : WeightOf((position + step) / step));
    for (; i < count; ++i, position += step) {
        const std::int32_t index = IndexAt(position);
        if (position > beyond || index >= source - 1) break;
        points[i] = Between(index, WeightOf(position - index));
    }
    for (; i < count; ++i, position += step) {
        const Byte missing = WeightOf((position - (source - 1)) / step);
        points[i] =
            position > beyond ? Alone(source) : Between(source, static_cast<Byte>(255 - missing));
    }
}

// Weights of a cubic B-spline between its second and third pixel.
PXB_INLINE void SetSplineWeights(double f, Byte* weight) {
    const double g = 1 - f;
    const double parts[4] = {g * g * g / 6.0, (3 * f * f * f - 6 * f * f + 4) / 6.0,
                             (3 * g * g * g - 6 * g * g + 4) / 6.0, f * f * f / 6.0};
    int rest = 255, largest = 0;
    for (int k = 0; k < 4; ++k) {
        weight[k] = static_cast<Byte>(TruncateSmall(parts[k] * 255 + 0.5));
        rest -= weight[k];
        if (weight[k] > weight[largest]) largest = k;
    }
    weight[largest] = static_cast<Byte>(weight[largest] + rest);
}

PXB_NOINLINE void FillSpline(SourcePoint* points, std::int32_t count, std::int32_t source) {
    const double step = static_cast<double>(source) / count;
    double position = 0.5 * step - 1.5;
    for (std::int32_t i = 0; i < count; ++i, position += step) {
        const double almost = position + kAlmost;
        const std::int32_t first = almost < 0 ? -1 : TruncateSmall(almost);
        const double fraction = position - first;
        points[i].first = first;
        const bool is_whole = fraction > -kAlmost && fraction < kAlmost;
        SetSplineWeights(is_whole ? 0 : fraction, points[i].weight);
    }
}

}  // namespace

void FillSourceTable(SourcePoint* points, std::int32_t count, std::int32_t source, Filter filter,
                     bool tight) {
    const FloatGuard guard;
    switch (filter) {
        case Filter::kNothing:
            return;
        case Filter::kNearest:
            return FillNearest(points, count, source);
        case Filter::kBilinear:
            return FillBilinear(points, count, source, tight);
        case Filter::kFaded:
            return FillFaded(points, count, source);
        case Filter::kSpline:
            return FillSpline(points, count, source);
    }
}

}  // namespace pxb::PXB_DOUBLES
