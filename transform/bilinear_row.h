// The inner pixels of a warped row, in whole numbers.
#pragma once
#include "core/byte.h"
#include "transform/raster.h"

namespace pxb {

// A point of the source in units of 1 / 65536 pixel.
struct FixedPoint {
    std::int64_t u, v;
};

// Pixel i of `count` is the source at (u + i du, v + i dv), interpolated between four neighbours:
// first along rows, then across, each a + floor((b - a) * weight / 256), with the upper 8 bits of the
// fraction as weight. A fourth byte that the source does not have becomes 0.
using BilinearRow = void(Byte* dst, FixedPoint at, FixedPoint step, const SourceRowTable& source,
                         std::int64_t count);

namespace plain {

// The kernel for pixels of that many bytes, 3 or 4 each; null for others.
BilinearRow* BilinearRowKernel(std::int32_t source_bytes, std::int32_t destination_bytes);

}  // namespace plain
}  // namespace pxb
