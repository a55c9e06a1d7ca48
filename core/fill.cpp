// PxbFillColor: checks the record and paints it, format by format.
#include "core/paint.h"
#include "core/planes.h"
#include "core/studio_color.h"

namespace pxb {
namespace {

void PaintPacked(const ImageBuffer& image, const Pattern& pattern, std::int32_t count) {
    PaintRows(image.data, image.stride, pattern, count, image.height);
}

// Whole planes, padding included.
void Paint420(const ImageBuffer& image, Yuv yuv) {
    const Planes420 planes = PlanesOf420(image);
    const std::int64_t luma_bytes = FirstPlaneBytes(image);
    PaintPlane(planes.y, yuv.y, luma_bytes);
    PaintPlane(planes.u, yuv.u, luma_bytes / 4);
    PaintPlane(planes.v, yuv.v, luma_bytes / 4);
}

// Padding becomes 0; the grey level is the plain average, not the luma.
void PaintGrey(const ImageBuffer& image, Rgb color) {
    const auto grey = static_cast<Byte>((color.r + color.g + color.b) / 3);
    if (image.stride > image.width) PaintPlane(image.data, 0, FirstPlaneBytes(image));
    PaintPacked(image, {{grey}, 1}, image.width);
}

}  // namespace
}  // namespace pxb

int32_t PXB_CALL PxbFillColor(ImageBuffer* image, uint32_t color) {
    using namespace pxb;
    if (!image->data) return PXB_BAD_ARGUMENT;
    if (image->format < PXB_RGB24 || image->format > PXB_YUV422) return PXB_BAD_ARGUMENT;
    if (!HasPixels(*image)) return PXB_SUCCESS;

    const Rgb rgb = {static_cast<Byte>(color), static_cast<Byte>(color >> 8),
                     static_cast<Byte>(color >> 16)};
    const Yuv yuv = StudioYuv(rgb);
    switch (image->format) {
        case PXB_RGB24:
            PaintPacked(*image, {{rgb.b, rgb.g, rgb.r}, 3}, image->width);
            break;
        case PXB_RGB32:
            PaintPacked(*image, {{rgb.b, rgb.g, rgb.r, 0}, 4}, image->width);
            break;
        case PXB_YUY2:
            PaintPacked(*image, {{yuv.y, yuv.u, yuv.y, yuv.v}, 4}, image->width / 2);
            break;
        case PXB_YUV422:
            PaintPacked(*image, {{yuv.u, yuv.y, yuv.v, yuv.y}, 4}, image->width / 2);
            break;
        case PXB_RGB8:
            PaintGrey(*image, rgb);
            break;
        default:
            Paint420(*image, yuv);
            break;
    }
    return PXB_SUCCESS;
}
