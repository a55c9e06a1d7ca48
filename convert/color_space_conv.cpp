// PxbColorSpaceConv: checks the records, routes by source and destination format, and calls one
// kernel. Functions below answer for one source format each.
#include "convert/rgb_copies.h"
#include "convert/yuv_to_rgb.h"
#include "core/planes.h"

namespace pxb {
namespace {

// All kernels that turn one packed image into another share a signature.
ResultCode RunPacked(Yuy2ToRgbKernel* kernel, const ImageBuffer& to, const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    kernel(to.data, to.stride, from.data, from.stride, area.width, area.height);
    return PXB_SUCCESS;
}

ResultCode Run420ToRgb(Yuv420ToRgbKernel* kernel, const ImageBuffer& to, const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    const Planes420 planes = PlanesOf420(from);
    kernel(to.data, to.stride, planes.y, planes.u, planes.v, planes.stride, planes.chroma_stride,
           area.width, area.height);
    return PXB_SUCCESS;
}

// Planar 4:2:2 has tight rows of the common width; its planes are placed by the partner's width and
// the common height, also where the image itself is taller.
ResultCode Run422ToRgb24(const ImageBuffer& to, const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    const Planes422 planes = PlanesOf422(from.data, to.width, area.height);
    kYuv422ToRgb24.Choose()(area.width, to.data, to.stride, planes.y, area.width, planes.u,
                            planes.v, area.width, area.height);
    return PXB_SUCCESS;
}

ResultCode FromRgb24(const ImageBuffer& to, const ImageBuffer& from) {
    switch (to.format) {
        case PXB_RGB24:
            return RunPacked(kCopyRgb24.Choose(), to, from);
        case PXB_RGB32:
            return RunPacked(kRgb24ToRgb32.Choose(), to, from);
        case PXB_YV12:
        case PXB_YUY2:
        case PXB_I420:
        case PXB_RGB8:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

ResultCode FromRgb32(const ImageBuffer& to, const ImageBuffer& from) {
    switch (to.format) {
        case PXB_RGB24:
            return RunPacked(kRgb32ToRgb24.Choose(), to, from);
        case PXB_RGB32:
            return RunPacked(kCopyRgb32.Choose(), to, from);
        case PXB_YV12:
        case PXB_YUY2:
        case PXB_I420:
        case PXB_RGB8:
        case PXB_AYUV32:
        case PXB_NV12:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

ResultCode From420(const ImageBuffer& to, const ImageBuffer& from) {
    switch (to.format) {
        case PXB_RGB24:
            return Run420ToRgb(kYuv420ToRgb24.Choose(), to, from);
        case PXB_RGB32:
            return Run420ToRgb(kYuv420ToRgb32.Choose(), to, from);
        case PXB_YV12:
        case PXB_YUY2:
        case PXB_I420:
        case PXB_RGB8:
            return PXB_UNSUPPORTED;
        // The two plane orders answer differently, which callers see.
        case PXB_NV12:
            return from.format == PXB_YV12 ? PXB_UNSUPPORTED : PXB_BAD_ARGUMENT;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

ResultCode FromYuy2(const ImageBuffer& to, const ImageBuffer& from) {
    switch (to.format) {
        case PXB_RGB24:
            return RunPacked(kYuy2ToRgb24.Choose(), to, from);
        case PXB_RGB32:
            return RunPacked(kYuy2ToRgb32.Choose(), to, from);
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

ResultCode FromRgb8(const ImageBuffer& to) {
    return to.format >= PXB_RGB24 && to.format <= PXB_RGB8 ? PXB_UNSUPPORTED : PXB_BAD_ARGUMENT;
}

ResultCode From422(const ImageBuffer& to, const ImageBuffer& from) {
    switch (to.format) {
        case PXB_RGB24:
            return Run422ToRgb24(to, from);
        case PXB_YUY2:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

ResultCode FromAyuvOrNv12(const ImageBuffer& to) {
    return to.format == PXB_RGB32 ? PXB_UNSUPPORTED : PXB_BAD_ARGUMENT;
}

ResultCode Convert(const ImageBuffer& to, const ImageBuffer& from) {
    switch (from.format) {
        case PXB_RGB24:
            return FromRgb24(to, from);
        case PXB_RGB32:
            return FromRgb32(to, from);
        case PXB_YV12:
        case PXB_I420:
            return From420(to, from);
        case PXB_YUY2:
            return FromYuy2(to, from);
        case PXB_RGB8:
            return FromRgb8(to);
        case PXB_YUV422:
            return From422(to, from);
        case PXB_AYUV32:
        case PXB_NV12:
            return FromAyuvOrNv12(to);
        default:
            return PXB_BAD_ARGUMENT;
    }
}

}  // namespace
}  // namespace pxb

int32_t PXB_CALL PxbColorSpaceConv(ImageBuffer* dst, const ImageBuffer* src) {
    const ImageBuffer to = *dst, from = *src;
    if (!to.data) return PXB_BAD_ARGUMENT;
    if (!from.data) return PXB_BAD_ARGUMENT;
    const ResultCode result = pxb::Convert(to, from);
    // The companion's result replaces the conversion's own, also where the pair is unsupported: the
    // alpha plane must not be lost.
    if (from.format == PXB_RGB32 && to.alpha) return PxbChannelGet(to.alpha, src, 1);
    return result;
}
