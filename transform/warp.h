// Resampling of interleaved images turned about their centres.
#pragma once
#include "core/doubles.h"
#include "transform/raster.h"

namespace pxb {

// Writes the destination pixels that fall onto the source; the others keep their bytes. Pixels are 3
// or 4 bytes and images at least 2 x 2, or nothing is written. The inner pixels of each row are
// interpolated. Those at its ends that reach over the source's edge fade toward black; all of such a
// band come from one source pixel, that of its leftmost.
using WarpKernel = void(const Raster<Byte>& dst, const SourceRowTable& src,
                        std::int32_t angle_degrees);

PXB_DECLARE_IN_DOUBLES(WarpKernel, TurnByWarp)
constexpr auto kTurnByWarp = PXB_VARIANTS_IN_DOUBLES(TurnByWarp);

}  // namespace pxb
