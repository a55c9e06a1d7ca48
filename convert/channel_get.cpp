// PxbChannelGet: checks the records and takes one channel of packed RGB.
#include "convert/channel.h"
#include "core/planes.h"

namespace pxb {
namespace {

constexpr std::int32_t kFirstChannel = 1, kLastChannel = 4;

// RGB24 has no fourth byte: channel 1 is its grey level.
ResultCode FromRgb24(const ImageBuffer& to, const ImageBuffer& from, std::int32_t channel) {
    if (channel < kFirstChannel || channel > kLastChannel) return PXB_BAD_ARGUMENT;
    if (channel != 1) return PXB_UNSUPPORTED;
    TakeRgb24Grey(to.data, to.stride, from.data, from.stride, from.width, from.height);
    return PXB_SUCCESS;
}

ResultCode FromRgb32(const ImageBuffer& to, const ImageBuffer& from, std::int32_t channel) {
    if (channel < kFirstChannel || channel > kLastChannel) return PXB_BAD_ARGUMENT;
    const std::int32_t byte = kLastChannel - channel;
    kRgb32Channel.Choose()(to.data, to.stride, from.data, from.stride, from.width, from.height,
                           byte);
    return PXB_SUCCESS;
}

}  // namespace
}  // namespace pxb

int32_t PXB_CALL PxbChannelGet(ImageBuffer* dst, const ImageBuffer* src, int32_t channel) {
    using namespace pxb;
    if (!dst->data) return PXB_BAD_ARGUMENT;
    if (!src->data) return PXB_BAD_ARGUMENT;
    switch (src->format) {
        case PXB_RGB24:
            return FromRgb24(*dst, *src, channel);
        case PXB_RGB32:
            return FromRgb32(*dst, *src, channel);
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
