// The inner pixels of a warped row, in whole numbers.
#pragma once
#include "core/byte.h"
#include "core/variants.h"
#include "transform/raster.h"

namespace pxb {

// A point of the source in units of 1 / 65536 pixel.
struct FixedPoint {
    std::int64_t u, v;
};

// Pixel i of `count` is the source at (u + i du, v + i dv), interpolated between four neighbours:
// first along rows, then across, each a + floor((b - a) * weight / 256), with the upper 8 bits of the
// fraction as weight. Both images have the same bytes per pixel, 3 or 4, if the name tells no more.
using BilinearRow = void(Byte* dst, FixedPoint at, FixedPoint step, const SourceRowTable& source,
                         std::ptrdiff_t count);

#define PXB_DECLARE_BILINEAR_ROWS(target) \
    namespace target {                    \
    BilinearRow BilinearRowKernel;        \
    }
PXB_DECLARE_BILINEAR_ROWS(plain)
PXB_DECLARE_BILINEAR_ROWS(sse2)
PXB_WIDE_TARGETS(PXB_TARGET_ALONE, PXB_DECLARE_BILINEAR_ROWS)
#undef PXB_DECLARE_BILINEAR_ROWS

// From pixels of 3 bytes to those of 4, whose fourth becomes 0, and back.
BilinearRow BilinearRow24To32, BilinearRow32To24;

constexpr auto kBilinearRow = PXB_VARIANTS_FROM_SSE2(BilinearRowKernel);

}  // namespace pxb
