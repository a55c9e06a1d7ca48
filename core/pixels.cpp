// The seven accessors: addresses of single pixels, without checks.
#include "core/planes.h"

namespace {

using pxb::Byte;

Byte* RowOf(const ImageBuffer* image, int32_t y) {
    return image->data + std::int64_t{y} * image->stride;
}

// Callers depend on the half x of luma, and on chroma rows that start at a quarter of the luma
// offset, which is half a chroma row too far for odd y.
PlanePointers Pixel420(const ImageBuffer* image, int32_t x, int32_t y, bool v_comes_first) {
    const pxb::Planes420 planes =
        pxb::PlanesOf420(image->data, image->stride, pxb::FirstPlaneBytes(*image), v_comes_first);
    const std::int64_t row = std::int64_t{y} * image->stride;
    return {planes.y + row + x / 2, planes.u + row / 4 + x / 2, planes.v + row / 4 + x / 2};
}

}  // namespace

uint8_t* PXB_CALL PxbPixelsRGB24(const ImageBuffer* image, int32_t x, int32_t y) {
    return RowOf(image, y) + std::int64_t{3} * x;
}

uint8_t* PXB_CALL PxbPixelsRGB32(const ImageBuffer* image, int32_t x, int32_t y) {
    return RowOf(image, y) + std::int64_t{4} * x;
}

uint8_t* PXB_CALL PxbPixelsRGB8(const ImageBuffer* image, int32_t x, int32_t y) {
    return RowOf(image, y) + x;
}

PlanePointers PXB_CALL PxbPixelsYV12(const ImageBuffer* image, int32_t x, int32_t y) {
    return Pixel420(image, x, y, true);
}

PlanePointers PXB_CALL PxbPixelsI420(const ImageBuffer* image, int32_t x, int32_t y) {
    return Pixel420(image, x, y, false);
}

PlanePointers PXB_CALL PxbPixelsYUY2(const ImageBuffer* image, int32_t x, int32_t y) {
    Byte* const row = RowOf(image, y);
    Byte* const u = row + std::int64_t{4} * (x / 2) + 1;
    return {row + std::int64_t{2} * x, u, u + 2};
}

PlanePointers PXB_CALL PxbPixelsYUV422(const ImageBuffer*, int32_t, int32_t) {
    return {nullptr, nullptr, nullptr};
}
