// Where destination columns and rows lie in the source. The positions are part of the contract:
// IEEE doubles, the same on every build and in every floating-point environment of the caller.
#pragma once
#include <cstdint>

#include "core/doubles.h"
#include "scale/filter.h"

namespace pxb {

// The pixel or row `first` and those after it, each with its weight.
//
// kNearest             the one alone; no weights
// kBilinear, kFaded    weight[1] / 256 of the second, the rest of the first. Weight 0: the first
//                      alone. A faded edge stands between 0 and the edge pixel: the source goes on
//                      with 0 before its first pixel, and with 0 and once more the last behind it.
//                      So first is -1 or the extent there.
// kSpline              weight[0..3] / 255 of four, which sum up to 255; edge pixels repeat, and
//                      first is at least -1
struct SourcePoint {
    std::int32_t first;
    Byte weight[4];
};

// Fills `count` points of an axis, for extents of at least 1. tight: the last two pixels of the
// source stay out of interpolation, and the last one takes their place. Required of the columns of
// 24-bit pixels.
using SourceTableKernel = void(SourcePoint* points, std::int32_t count, std::int32_t source,
                               Filter filter, bool tight);

PXB_DECLARE_IN_DOUBLES(SourceTableKernel, FillSourceTable)
constexpr auto kSourceTable = PXB_VARIANTS_IN_DOUBLES(FillSourceTable);

}  // namespace pxb
