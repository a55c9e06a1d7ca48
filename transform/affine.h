// The map from destination to source that turns an image about its centre.
#pragma once
#include <cstdint>

#include "core/doubles.h"
#include "transform/raster.h"

namespace pxb {

// Source point of the destination pixel (x, y), whole numbers being the pixels of either image:
// u = m00 x + m10 y + m20, v = m01 x + m11 y + m21.
struct Affine {
    double m00, m10, m20;
    double m01, m11, m21;
};

namespace PXB_DOUBLES {

// The centre of the destination maps onto the centre of the source. With y pointing down, 90 degrees
// turn counter-clockwise as seen on the screen. The floating-point unit must be in the state of
// FloatGuard.
void TurnAboutCentres(std::int32_t angle_degrees, const Raster<Byte>& dst,
                      const Raster<const Byte>& src, Affine* map);

}  // namespace PXB_DOUBLES
}  // namespace pxb
