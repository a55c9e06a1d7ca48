// Rectangles of images: what functions that take a Rect ask of it.
#pragma once
#include <optional>

#include "PxbLib.h"
#include "core/planes.h"

namespace pxb {

inline Rect WholeOf(const ImageBuffer& image) {
    return {0, 0, image.width, image.height};
}

inline bool LiesIn(const ImageBuffer& image, const Rect& rect) {
    return rect.top >= 0 && rect.left >= 0 && rect.bottom <= image.height &&
           rect.right <= image.width && rect.top <= rect.bottom && rect.left <= rect.right;
}

// Of a rectangle that lies in its image.
inline bool IsEmpty(const Rect& rect) {
    return rect.top == rect.bottom || rect.left == rect.right;
}

// The answer of a call whose rectangle ends it, before anything else of the image is looked at:
// companions are then not visited. None where the call goes on; null stands for the whole image.
inline std::optional<ResultCode> AnswerToRect(const ImageBuffer& image, const Rect* rect) {
    if (!rect) return std::nullopt;
    if (!LiesIn(image, *rect)) return PXB_BAD_ARGUMENT;
    if (IsEmpty(*rect)) return PXB_SUCCESS;
    return std::nullopt;
}

// Nothing of an image without pixels.
inline Extent ExtentOf(const ImageBuffer& image, const Rect& rect) {
    if (!HasPixels(image)) return {0, 0};
    return {rect.right - rect.left, rect.bottom - rect.top};
}

}  // namespace pxb
