// PxbRotate: checks the records and turns the pixels, then those of the companions.
#include "core/planes.h"
#include "transform/rotate_interleaved.h"
#include "transform/rotate_planar.h"

namespace pxb {
namespace {

ResultCode RotatePixels(const ImageBuffer& to, const ImageBuffer& from, std::int32_t angle) {
    const bool exists = HasPixels(to) && HasPixels(from);
    switch (from.format) {
        case PXB_RGB24:
        case PXB_RGB32:
        case PXB_RGB8:
            if (exists)
                RotateInterleaved(to.bitsPerPixel, to.data, to.width, to.height, to.stride,
                                  from.data, from.width, from.height, from.stride,
                                  from.bitsPerPixel, angle);
            return PXB_SUCCESS;
        case PXB_YV12:
        case PXB_I420:
            if (exists)
                RotatePlanar420(to.data, from.data, to.height, to.stride, from.stride, angle,
                                from.width, from.height);
            return PXB_SUCCESS;
        case PXB_YUY2:
        case PXB_YUV422:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

}  // namespace
}  // namespace pxb

int32_t PXB_CALL PxbRotate(ImageBuffer* dst, const ImageBuffer* src, int32_t angle) {
    using namespace pxb;
    if (dst->format != src->format) return PXB_BAD_ARGUMENT;
    if (!dst->data) return PXB_BAD_ARGUMENT;
    if (!src->data) return PXB_BAD_ARGUMENT;
    const ResultCode result = RotatePixels(*dst, *src, angle);
    // The companions' result replaces that of the pixels, also where their format is unsupported or
    // unknown.
    if (dst->alpha && src->alpha) return PxbRotate(dst->alpha, src->alpha, angle);
    return result;
}
