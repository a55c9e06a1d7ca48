// PxbNew and PxbDelete: the only allocations of the library that outlive a call.
#include <new>

#include "core/format.h"
#include "core/pixel_memory.h"

namespace pxb {
namespace {

std::int64_t RoundUpToEven(std::int64_t n) {
    return (n + 1) / 2 * 2;
}

// Bytes of an interleaved row, padded to a multiple of 4. Division truncates, so that negative
// widths round toward zero.
std::int64_t PaddedRowBytes(std::int64_t width, std::int32_t bits_per_pixel) {
    return (width * bits_per_pixel + 31) / 32 * 4;
}

// Of all planes. A stride that leaves 32 bits is refused here, as -1, before the product can
// leave 64.
std::int64_t ImageBytes(std::int64_t height, std::int64_t stride, const FormatInfo& format) {
    constexpr std::int64_t kLargest = std::int64_t{1} << 31;
    if (height != 0 && (stride > kLargest || stride < -kLargest)) return -1;
    const std::int64_t first_plane = height * stride;
    return format.planar420 ? first_plane + first_plane / 2 : first_plane;
}

// Completes the record's derived fields and gives it memory. Sizes are computed in 64 bits from the
// rounded extents, of which the record keeps the low 32.
void AllocateImage(ImageBuffer* image, const FormatInfo& format) {
    const std::int64_t width = format.even_width ? RoundUpToEven(image->width) : image->width;
    const std::int64_t height = format.planar420 ? RoundUpToEven(image->height) : image->height;
    const std::int64_t stride =
        format.planar420 ? width : PaddedRowBytes(width, format.bits_per_pixel);

    image->bitsPerPixel = format.bits_per_pixel;
    image->width = static_cast<std::int32_t>(width);
    image->height = static_cast<std::int32_t>(height);
    image->stride = static_cast<std::int32_t>(stride);
    image->data = AllocatePixels(ImageBytes(height, stride, format));
}

// A companion without memory for its pixels stays attached, with null data; callers can tell.
ImageBuffer* NewCompanion(const ImageBuffer& owner) {
    ImageBuffer* const companion = new (std::nothrow) ImageBuffer{};
    if (!companion) return nullptr;
    companion->format = PXB_RGB8;
    companion->bitsPerPixel = 8;
    companion->width = owner.width;
    companion->height = owner.height;
    PxbNew(companion, 0);
    return companion;
}

}  // namespace
}  // namespace pxb

// The order decides between the results of a refused format: the test of `data` comes last and sees
// whatever the caller left there.
int32_t PXB_CALL PxbNew(ImageBuffer* image, int32_t withAlpha) {
    const pxb::FormatInfo* const format = pxb::FindFormat(image->format);
    if (format) pxb::AllocateImage(image, *format);
    if (withAlpha) image->alpha = pxb::NewCompanion(*image);
    if (!image->data) return PXB_FAILURE;
    PxbFillColor(image, 0);
    return format ? PXB_SUCCESS : PXB_BAD_ARGUMENT;
}

int32_t PXB_CALL PxbDelete(ImageBuffer* image) {
    pxb::ReleasePixels(image->data);
    image->data = nullptr;
    if (image->alpha) {
        pxb::ReleasePixels(image->alpha->data);
        delete image->alpha;
        image->alpha = nullptr;
    }
    return PXB_SUCCESS;
}
