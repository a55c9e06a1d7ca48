// Sine and cosine, correctly rounded and so the same on every build: those of C libraries differ
// from one another in the last bit, which repeated addition along an image brings to light.
#pragma once

#include "core/doubles.h"

namespace pxb::PXB_DOUBLES {

// For |radians| < 2^26. The floating-point unit must be in the state of FloatGuard.
void ComputeSineAndCosine(double radians, double* sine, double* cosine);

}  // namespace pxb::PXB_DOUBLES
