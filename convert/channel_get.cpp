// PxbChannelGet: checks the records and takes one channel of packed RGB, or the luma of any image.
#include <cstdint>
#include <limits>

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

// By way of a temporary image, of rounded size and black where the conversion does not write.
// Failures leave the destination as it is and are not reported: callers depend on the 0.
void TakeLumaByConversion(const ImageBuffer& to, const ImageBuffer& from) {
    ImageBuffer luma = {};
    luma.format = PXB_YV12;
    luma.width = from.width;
    luma.height = from.height;
    if (PxbNew(&luma, 0) != PXB_SUCCESS) return;
    if (PxbColorSpaceConv(&luma, &from) == PXB_SUCCESS && HasPixels(luma) && HasPixels(to))
        CopyRows(to.data, to.stride, luma.data, luma.stride, luma.stride, luma.height);
    PxbDelete(&luma);
}

// What that comes to where no size is rounded and no row drifts: luma alone, without the temporary
// image. Sizes that an image cannot have are refused all the same.
void TakeLumaOfEven(const ImageBuffer& to, const ImageBuffer& from, PackedToPackedKernel* kernel) {
    constexpr std::int64_t kMostBytes = std::numeric_limits<std::int32_t>::max();
    if (std::int64_t{from.width} * from.height / 2 * 3 > kMostBytes || !HasPixels(to)) return;
    kernel(to.data, to.stride, from.data, from.stride, from.width, from.height);
}

void TakeLuma(const ImageBuffer& to, const ImageBuffer& from) {
    const bool even = from.width > 0 && from.width % 2 == 0 && from.height % 2 == 0;
    if (!even || from.height < 0) return TakeLumaByConversion(to, from);
    switch (from.format) {
        case PXB_RGB24:
            return TakeLumaOfEven(to, from, kRgb24Luma.Choose());
        case PXB_RGB32:
            return TakeLumaOfEven(to, from, kRgb32Luma.Choose());
        case PXB_YUY2:
            return TakeLumaOfEven(to, from, kYuy2Luma.Choose());
        default:
            return TakeLumaByConversion(to, from);
    }
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
