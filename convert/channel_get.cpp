// PxbChannelGet: checks the records and takes one channel of packed RGB, or the luma of any image.
#include <algorithm>

#include "convert/channel.h"
#include "core/copy.h"
#include "core/planes.h"

namespace pxb {
namespace {

constexpr std::int32_t kFirstChannel = 1, kLastChannel = 4, kLuma = 5;

// Bytes from one destination row to the next. The advance over the padding is computed from the
// destination's own width, so that rows do not start at multiples of the stride where widths
// differ.
std::int32_t RowStep(const ImageBuffer& to, const Extent& source) {
    return static_cast<std::int32_t>(std::int64_t{source.width} + to.stride - to.width);
}

// RGB24 has no fourth byte: channel 1 is its grey level.
ResultCode FromRgb24(const ImageBuffer& to, const ImageBuffer& from, std::int32_t channel) {
    if (channel < kFirstChannel || channel > kLastChannel) return PXB_BAD_ARGUMENT;
    if (channel != 1) return PXB_UNSUPPORTED;
    const Extent all = SourceExtent(to, from);
    kRgb24Grey.Choose()(to.data, RowStep(to, all), from.data, from.stride, all.width, all.height);
    return PXB_SUCCESS;
}

ResultCode FromRgb32(const ImageBuffer& to, const ImageBuffer& from, std::int32_t channel) {
    if (channel < kFirstChannel || channel > kLastChannel) return PXB_BAD_ARGUMENT;
    const Extent all = SourceExtent(to, from);
    kRgb32Channel.Choose()(to.data, RowStep(to, all), from.data, from.stride, all.width, all.height,
                           kLastChannel - channel);
    return PXB_SUCCESS;
}

ResultCode FromPackedRgb(const ImageBuffer& to, const ImageBuffer& from, std::int32_t channel) {
    switch (from.format) {
        case PXB_RGB24:
            return FromRgb24(to, from, channel);
        case PXB_RGB32:
            return FromRgb32(to, from, channel);
        case PXB_YV12:
        case PXB_YUY2:
        case PXB_I420:
        case PXB_RGB8:
        case PXB_YUV422:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

constexpr std::int32_t kBandRows = 16;

// Whether bands of rows convert like the whole image does: where rows are packed and no size is
// rounded. An image too large for one allocation must not get past it in bands.
bool ConvertsInBands(const ImageBuffer& image) {
    constexpr std::int64_t kMostPixels = 1 << 30;
    const bool packed =
        image.format == PXB_RGB24 || image.format == PXB_RGB32 || image.format == PXB_YUY2;
    return packed && image.width > 0 && image.width % 2 == 0 && image.height % 2 == 0 &&
           std::int64_t{image.width} * image.height <= kMostPixels;
}

ImageBuffer RowsOf(const ImageBuffer& image, std::int32_t first, std::int32_t height) {
    ImageBuffer rows = image;
    rows.data += std::int64_t{first} * image.stride;
    rows.height = std::min(height, image.height - first);
    return rows;
}

// Luma by way of a temporary image, of rounded size; a small one where that does, since a large one
// takes longer to come by than to convert. Failures leave the destination as it is and are not
// reported: callers depend on the 0.
void TakeLuma(const ImageBuffer& to, const ImageBuffer& from) {
    const std::int32_t rows =
        ConvertsInBands(from) ? std::min(kBandRows, from.height) : from.height;
    ImageBuffer luma = {};
    luma.format = PXB_YV12;
    luma.width = from.width;
    luma.height = rows;
    if (PxbNew(&luma, 0) != PXB_SUCCESS) return;
    for (std::int32_t y = 0; y < from.height; y += rows) {
        const ImageBuffer band = RowsOf(from, y, rows);
        if (rows < from.height) luma.height = band.height;
        if (PxbColorSpaceConv(&luma, &band) != PXB_SUCCESS) break;
        if (HasPixels(luma) && HasPixels(to))
            CopyRows(to.data + std::ptrdiff_t{y} * to.stride, to.stride, luma.data, luma.stride,
                     luma.stride, luma.height);
    }
    PxbDelete(&luma);
}

}  // namespace
}  // namespace pxb

int32_t PXB_CALL PxbChannelGet(ImageBuffer* dst, const ImageBuffer* src, int32_t channel) {
    using namespace pxb;
    if (!dst->data) return PXB_BAD_ARGUMENT;
    if (!src->data) return PXB_BAD_ARGUMENT;
    if (channel != kLuma) return FromPackedRgb(*dst, *src, channel);
    TakeLuma(*dst, *src);
    return PXB_SUCCESS;
}
