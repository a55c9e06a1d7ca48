// Exact turns of samples or pixels by a quarter or a half.
#pragma once
#include "core/byte.h"
#include "core/variants.h"

namespace pxb {

// Destination pixel (x, y) takes the `bytes` (1, 3 or 4) at src + x * x_step + y * y_step, where
// y_step is one pixel of a source row, forward or backward.
using QuarterTurn = void(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                         std::ptrdiff_t x_step, std::ptrdiff_t y_step, std::int32_t width,
                         std::int32_t height, std::int32_t bytes);

// Reverses the order of all bytes.
using HalfTurn = void(Byte* dst, const Byte* src, std::ptrdiff_t count);

#define PXB_DECLARE_TURNS(target) \
    namespace target {            \
    QuarterTurn TurnQuarter;      \
    HalfTurn TurnHalf;            \
    }
PXB_DECLARE_TURNS(plain)
PXB_DECLARE_TURNS(sse2)
PXB_WIDE_TARGETS(PXB_TARGET_ALONE, PXB_DECLARE_TURNS)
#undef PXB_DECLARE_TURNS

constexpr auto kTurnQuarter = PXB_VARIANTS_FROM_SSE2(TurnQuarter);
constexpr auto kTurnHalf = PXB_VARIANTS_FROM_SSE2(TurnHalf);

}  // namespace pxb
