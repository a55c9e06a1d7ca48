// Turns: one call, compared in every variant.
#pragma once
#include "fuzz/stage.h"
#include "rotation.h"

namespace pxb::test {

// With sine and cosine as the library has them.
Turn TurnOf(int angle);

// The records come without data; their bits say how large pixels are. The destination is cut where
// the exact copies at its edges would leave the source.
void CheckRotation(Stage& stage, ImageBuffer dst, ImageBuffer src, const Turn& turn);

}  // namespace pxb::test
