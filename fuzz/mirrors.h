// Mirrors: one call, compared in every variant.
#pragma once
#include "fuzz/stage.h"

namespace pxb::test {

using Flip = std::int32_t(PXB_CALL*)(ImageBuffer*, const Rect*);

// The record comes without data, which the stage gives it unless it is to have none. `rect` may be
// null.
void CheckMirror(Stage& stage, Flip flip, ImageBuffer image, const Rect* rect,
                 bool has_data = true);

}  // namespace pxb::test
