// PxbFliphorizontal and PxbFlipvertical: check the record and mirror it, format by format.
#include <cstdlib>

#include "core/planes.h"
#include "core/rectangle.h"
#include "transform/mirrors.h"

namespace pxb {
namespace {

// Both mirrors handle the two chroma planes alike, but do not agree on where the second one lies:
// callers' images with odd strides or heights depend on either.
struct Chroma {
    Byte* planes[2];
    std::ptrdiff_t stride;
};

Chroma ChromaOf(const ImageBuffer& image, std::int64_t plane_bytes) {
    Byte* const first = image.data + FirstPlaneBytes(image);
    return {{first, first + plane_bytes}, image.stride / 2};
}

Byte* At(Byte* plane, std::ptrdiff_t stride, std::int32_t x, std::int32_t y,
         int bytes_per_pixel = 1) {
    return plane + y * stride + std::ptrdiff_t{x} * bytes_per_pixel;
}

// ---- Left to right ----

void MirrorPacked(const ImageBuffer& image, const Rect& area, int bytes_per_pixel) {
    const Extent extent = ExtentOf(image, area);
    kMirrorPixels.Choose()(At(image.data, image.stride, area.left, area.top, bytes_per_pixel),
                           image.stride, extent.width, extent.height, bytes_per_pixel);
}

ResultCode MirrorYuy2(const ImageBuffer& image, const Rect& area) {
    if ((area.right - area.left) % 2 != 0) return PXB_FAILURE;
    const Extent extent = ExtentOf(image, area);
    kMirrorYuy2.Choose()(At(image.data, image.stride, area.left, area.top, 2), image.stride,
                         extent.width, extent.height);
    return PXB_SUCCESS;
}

// Exchanges (width of the area) / 4 samples with as many from the other end. Between odd edges two
// more may remain in the middle, which stay: they are exchanged twice.
void MirrorChroma(Byte* plane, std::ptrdiff_t stride, const Rect& area) {
    MirrorPixelsKernel* const mirror = kMirrorPixels.Choose();
    Byte* const first = At(plane, stride, area.left / 2, area.top / 2);
    const std::int32_t width = area.right / 2 - area.left / 2;
    const std::int32_t height = (area.bottom - area.top) / 2;
    const std::int32_t exchanged = (area.right - area.left) / 4;
    mirror(first, stride, width, height, 1);
    if (width - 2 * exchanged == 2) mirror(first + exchanged, stride, 2, height, 1);
}

void MirrorPlanar420(const ImageBuffer& image, const Rect& area) {
    if (!HasPixels(image)) return;
    const std::int64_t plane_bytes = std::int64_t{image.height / 2} * (image.stride / 2);
    const Chroma chroma = ChromaOf(image, plane_bytes);
    MirrorPacked(image, area, 1);
    for (Byte* plane : chroma.planes) MirrorChroma(plane, chroma.stride, area);
}

ResultCode MirrorHorizontally(const ImageBuffer& image, const Rect& area) {
    switch (image.format) {
        case PXB_RGB24:
            MirrorPacked(image, area, 3);
            return PXB_SUCCESS;
        case PXB_RGB32:
            MirrorPacked(image, area, 4);
            return PXB_SUCCESS;
        case PXB_YV12:
        case PXB_I420:
            MirrorPlanar420(image, area);
            return PXB_SUCCESS;
        case PXB_YUY2:
            return MirrorYuy2(image, area);
        case PXB_RGB8:
            return PXB_SUCCESS;  // stays as it is: callers depend on it, for companions too
        case PXB_YUV422:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

bool HasOddCoordinate(const Rect& rect) {
    return (rect.top | rect.bottom | rect.left | rect.right) & 1;
}

// ---- Top to bottom ----

void ExchangeRows(Byte* first, std::ptrdiff_t stride, std::int64_t row_bytes, std::int32_t height) {
    if (row_bytes <= 0) return;
    const bool overlap = row_bytes > std::abs(stride);
    ExchangeRowsKernel* const exchange = overlap ? ExchangeOverlappingRows : kExchangeRows.Choose();
    exchange(first, stride, static_cast<std::ptrdiff_t>(row_bytes), height);
}

// Whole pixels move, of as many bytes as the record says, whatever its format.
void TurnPacked(const ImageBuffer& image, const Rect& area) {
    const Extent extent = ExtentOf(image, area);
    const int bytes_per_pixel = image.bitsPerPixel / 8;
    ExchangeRows(At(image.data, image.stride, area.left, area.top, bytes_per_pixel), image.stride,
                 std::int64_t{extent.width} * bytes_per_pixel, extent.height);
}

void TurnPlanar420(const ImageBuffer& image, const Rect& area) {
    if (!HasPixels(image)) return;
    const Extent extent = ExtentOf(image, area);
    const Chroma chroma = ChromaOf(image, FirstPlaneBytes(image) / 4);
    ExchangeRows(At(image.data, image.stride, area.left, area.top), image.stride, extent.width,
                 extent.height);
    for (Byte* plane : chroma.planes)
        ExchangeRows(At(plane, chroma.stride, area.left / 2, area.top / 2), chroma.stride,
                     extent.width / 2, extent.height / 2);
}

ResultCode MirrorVertically(const ImageBuffer& image, const Rect& area) {
    switch (image.format) {
        case PXB_YV12:
        case PXB_I420:
            TurnPlanar420(image, area);
            return PXB_SUCCESS;
        case PXB_RGB24:
        case PXB_RGB32:
        case PXB_YUY2:
        case PXB_RGB8:
        case PXB_YUV422:
            TurnPacked(image, area);
            return PXB_SUCCESS;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

}  // namespace
}  // namespace pxb

int32_t PXB_CALL PxbFliphorizontal(ImageBuffer* image, const Rect* rect) {
    using namespace pxb;
    const ImageBuffer all = *image;
    if (const auto answer = AnswerToRect(all, rect)) return *answer;
    if (!all.data) return PXB_BAD_ARGUMENT;
    if (rect && all.format == PXB_YUY2 && HasOddCoordinate(*rect)) return PXB_BAD_ARGUMENT;
    const ResultCode result = MirrorHorizontally(all, rect ? *rect : WholeOf(all));
    // The companion's result hides the image's own, also where the format is refused.
    return all.alpha ? PxbFliphorizontal(all.alpha, rect) : result;
}

int32_t PXB_CALL PxbFlipvertical(ImageBuffer* image, const Rect* rect) {
    using namespace pxb;
    const ImageBuffer all = *image;
    if (const auto answer = AnswerToRect(all, rect)) return *answer;
    if (!all.data) return PXB_BAD_ARGUMENT;
    const ResultCode result = MirrorVertically(all, rect ? *rect : WholeOf(all));
    return all.alpha ? PxbFlipvertical(all.alpha, rect) : result;
}
