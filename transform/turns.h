// Exact turns of a plane of samples or pixels by a quarter or a half.
#pragma once
#include "core/byte.h"
#include "core/variants.h"

namespace pxb {

// Destination pixel (x, y) takes the `bytes` (1, 3 or 4) at src + x * x_step + y * y_step. Of a
// quarter turn y_step is one pixel of the source or minus that, of a half turn x_step is minus one.
using TurnKernel = void(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                        std::ptrdiff_t x_step, std::ptrdiff_t y_step, std::int32_t width,
                        std::int32_t height, std::int32_t bytes);

namespace plain {
TurnKernel TurnQuarter, TurnHalf;
}  // namespace plain

constexpr Variants<TurnKernel> kTurnQuarter = {plain::TurnQuarter};
constexpr Variants<TurnKernel> kTurnHalf = {plain::TurnHalf};

}  // namespace pxb
