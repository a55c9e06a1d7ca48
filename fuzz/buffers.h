// Fills and images from PxbNew.
#pragma once
#include "fuzz/stage.h"

namespace pxb::test {

// The bytes from `image.data` on that PxbFillColor must leave there; of an image that has pixels.
void PaintByModel(const ImageBuffer& image, std::uint32_t color);

// The record comes without data.
void CheckFill(Stage& stage, ImageBuffer image, std::uint32_t color, bool has_data = true);

}  // namespace pxb::test
