// Resampling of interleaved images under an affine map.
#pragma once
#include "transform/affine.h"
#include "transform/raster.h"

namespace pxb {

// Writes the destination pixels that fall onto the source; the others keep their bytes. Pixels are 3
// or 4 bytes and images at least 2 x 2, or nothing is written. The inner pixels of each row are
// interpolated. Those at its ends that reach over the source's edge fade toward black; all of such a
// band come from one source pixel, that of its leftmost. The floating-point unit must be in the state
// of FloatGuard.
void AffineWarp(const Raster<Byte>& dst, const SourceRowTable& src, const Affine& map);

}  // namespace pxb
