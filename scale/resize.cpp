// PxbResize and PxbResizeEx: check the records and rectangles, and route by the format.
#include "core/rectangle.h"
#include "scale/scale.h"

namespace pxb {
namespace {

std::int64_t RowOffset(const ImageBuffer& image, std::int32_t top) {
    return std::int64_t{image.stride} * top;
}

// The record's bits rule, even against its format. Columns count by the bits of the destination in
// both images: callers depend on it.
template <class T>
PixelRows<T> RowsOf(const ImageBuffer& image, const Rect& rect, std::int32_t bits_per_column) {
    const std::int64_t column = std::int64_t{bits_per_column} * rect.left / 8;
    return {image.data + RowOffset(image, rect.top) + column, image.stride, image.bitsPerPixel / 8};
}

Planes420 PlanesOf(const ImageBuffer& image, const Rect& rect) {
    Planes420 planes = PlanesOf420(image);
    const std::int64_t chroma = std::int64_t{planes.chroma_stride} * (rect.top / 2) + rect.left / 2;
    planes.y += RowOffset(image, rect.top) + rect.left;
    planes.u += chroma;
    planes.v += chroma;
    return planes;
}

// An odd left edge starts at the second half of a group, which is then taken for the first.
Byte* PairsOf(const ImageBuffer& image, const Rect& rect) {
    return image.data + RowOffset(image, rect.top) + std::int64_t{2} * rect.left;
}

// Without the companions.
ResultCode Scale(const ImageBuffer& to, const ImageBuffer& from, const std::int32_t* mode,
                 const Rect& to_rect, const Rect& from_rect) {
    const bool has_pixels = HasPixels(to) && HasPixels(from);
    const ScaleExtents extents = {to_rect.right - to_rect.left, to_rect.bottom - to_rect.top,
                                  from_rect.right - from_rect.left,
                                  from_rect.bottom - from_rect.top};
    switch (to.format) {
        case PXB_RGB24:
        case PXB_RGB32:
        case PXB_RGB8:
            ScaleInterleaved(RowsOf<Byte>(to, to_rect, to.bitsPerPixel),
                             RowsOf<const Byte>(from, from_rect, to.bitsPerPixel), *mode, extents);
            return PXB_SUCCESS;
        case PXB_YV12:
        case PXB_I420:
            if (has_pixels)
                ScalePlanar420(PlanesOf(to, to_rect), PlanesOf(from, from_rect), *mode, extents);
            return PXB_SUCCESS;
        case PXB_YUY2:
            ScalePacked422(PairsOf(to, to_rect), to.stride, PairsOf(from, from_rect), from.stride,
                           extents);
            return PXB_SUCCESS;
        case PXB_YUV422:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

}  // namespace
}  // namespace pxb

int32_t PXB_CALL PxbResize(ImageBuffer* dst, const ImageBuffer* src, const int32_t* mode) {
    using namespace pxb;
    if (dst->format != src->format) return PXB_BAD_ARGUMENT;
    if (!dst->data) return PXB_BAD_ARGUMENT;
    if (!src->data) return PXB_BAD_ARGUMENT;
    const ResultCode result = Scale(*dst, *src, mode, WholeOf(*dst), WholeOf(*src));
    if (dst->alpha && src->alpha) return PxbResize(dst->alpha, src->alpha, mode);
    return result;
}

int32_t PXB_CALL PxbResizeEx(ImageBuffer* dst, const ImageBuffer* src, const int32_t* mode,
                             const Rect* dstRect, const Rect* srcRect) {
    using namespace pxb;
    if (dst->format != src->format) return PXB_BAD_ARGUMENT;
    if (!dst->data) return PXB_BAD_ARGUMENT;
    if (!src->data) return PXB_BAD_ARGUMENT;
    const Rect to = dstRect ? *dstRect : WholeOf(*dst);
    const Rect from = srcRect ? *srcRect : WholeOf(*src);
    if (!LiesIn(*dst, to)) return PXB_BAD_ARGUMENT;
    if (!LiesIn(*src, from)) return PXB_BAD_ARGUMENT;
    // Empty rectangles pass: nothing is scaled, and the companions are visited all the same.
    const ResultCode result = Scale(*dst, *src, mode, to, from);
    if (dst->alpha && src->alpha) return PxbResizeEx(dst->alpha, src->alpha, mode, &to, &from);
    return result;
}
