// PxbColorSpaceConv: checks the records, routes by source and destination format, and calls one
// kernel. Functions below answer for one source format each.
#include "convert/rgb_copies.h"
#include "convert/rgb_to_yuv.h"
#include "convert/yuv_reshuffles.h"
#include "convert/yuv_to_rgb.h"
#include "core/planes.h"

namespace pxb {
namespace {

ResultCode RunPacked(PackedToPackedKernel* kernel, const ImageBuffer& to, const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    kernel(to.data, to.stride, from.data, from.stride, area.width, area.height);
    return PXB_SUCCESS;
}

ResultCode Run420(Planar420ToPackedKernel* kernel, const ImageBuffer& to, const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    const Planes420 planes = PlanesOf420(from);
    kernel(to.data, to.stride, planes.y, planes.u, planes.v, planes.stride, planes.chroma_stride,
           area.width, area.height);
    return PXB_SUCCESS;
}

ResultCode RunTo420(PackedToPlanar420Kernel* kernel, const ImageBuffer& to,
                    const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    const Planes420 planes = PlanesOf420(to);
    kernel(planes.y, planes.u, planes.v, planes.stride, planes.chroma_stride, from.data,
           from.stride, area.width, area.height);
    return PXB_SUCCESS;
}

ResultCode RunRgb32ToNv12(const ImageBuffer& to, const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    const PlanesNv12 planes = PlanesOfNv12(to);
    kRgb32ToNv12.Choose()(planes.y, planes.uv, planes.stride, planes.stride, from.data, from.stride,
                          area.width, area.height);
    return PXB_SUCCESS;
}

ResultCode RunNv12ToRgb32(const ImageBuffer& to, const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    const PlanesNv12 planes = PlanesOfNv12(from);
    kNv12ToRgb32.Choose()(to.data, to.stride, planes.y, planes.uv, planes.stride, planes.stride,
                          area.width, area.height);
    return PXB_SUCCESS;
}

// The planes of YUV422 are placed by the destination's width and the common height, also where the
// image itself is taller. Its rows are tight, and those of a YUY2 partner are taken as tight too.
Planes422 PlanesBeside(const ImageBuffer& planar, const ImageBuffer& to, const Extent& area) {
    return PlanesOf422(planar.data, to.width, area.height);
}

ResultCode Run422ToRgb24(const ImageBuffer& to, const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    const Planes422 planes = PlanesBeside(from, to, area);
    kYuv422ToRgb24.Choose()(area.width, to.data, to.stride, planes.y, area.width, planes.u,
                            planes.v, area.width, area.height);
    return PXB_SUCCESS;
}

ResultCode RunYuy2To422(const ImageBuffer& to, const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    const Planes422 planes = PlanesBeside(to, to, area);
    kYuy2ToYuv422.Choose()(planes.y, planes.u, planes.v, from.data, area.height, area.width / 2);
    return PXB_SUCCESS;
}

ResultCode Run422ToYuy2(const ImageBuffer& to, const ImageBuffer& from) {
    const Extent area = CommonExtent(to, from);
    const Planes422 planes = PlanesBeside(from, to, area);
    kYuv422ToYuy2.Choose()(planes.y, planes.u, planes.v, to.data, area.height, area.width / 2);
    return PXB_SUCCESS;
}

// Walks the source's own size: right only for images of equal size, which is not checked. Like a
// source that is too large, a destination of another width shifts each row.
ResultCode RunRgb8ToRgb24(const ImageBuffer& to, const ImageBuffer& from) {
    const Extent all = SourceExtent(to, from);
    const std::int64_t row_step =
        to.stride + std::int64_t{3} * all.width - std::int64_t{3} * to.width;
    kRgb8ToRgb24.Choose()(to.data, static_cast<std::int32_t>(row_step), from.data, from.stride,
                          all.width, all.height);
    return PXB_SUCCESS;
}

ResultCode FromRgb24(const ImageBuffer& to, const ImageBuffer& from) {
    switch (to.format) {
        case PXB_RGB24:
            return RunPacked(kCopyRgb24.Choose(), to, from);
        case PXB_RGB32:
            return RunPacked(kRgb24ToRgb32.Choose(), to, from);
        case PXB_YV12:
        case PXB_I420:
            return RunTo420(kRgb24ToYuv420.Choose(), to, from);
        case PXB_YUY2:
            return RunPacked(kRgb24ToYuy2.Choose(), to, from);
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
        case PXB_I420:
            return RunTo420(kRgb32ToYuv420.Choose(), to, from);
        case PXB_YUY2:
            return RunPacked(kRgb32ToYuy2.Choose(), to, from);
        case PXB_AYUV32:
            return RunPacked(kRgb32ToAyuv32.Choose(), to, from);
        case PXB_NV12:
            return RunRgb32ToNv12(to, from);
        case PXB_RGB8:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

ResultCode From420(const ImageBuffer& to, const ImageBuffer& from) {
    switch (to.format) {
        case PXB_RGB24:
            return Run420(kYuv420ToRgb24.Choose(), to, from);
        case PXB_RGB32:
            return Run420(kYuv420ToRgb32.Choose(), to, from);
        case PXB_YV12:
            return Run420(kCopyYuv420ToYv12.Choose(), to, from);
        case PXB_I420:
            return Run420(kCopyYuv420ToI420.Choose(), to, from);
        case PXB_YUY2:
            return Run420(kYuv420ToYuy2.Choose(), to, from);
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
        case PXB_I420:
            return RunTo420(kYuy2ToYuv420.Choose(), to, from);
        case PXB_YUY2:
            return RunPacked(kCopyYuy2.Choose(), to, from);
        case PXB_YUV422:
            return RunYuy2To422(to, from);
        case PXB_RGB8:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

ResultCode FromRgb8(const ImageBuffer& to, const ImageBuffer& from) {
    switch (to.format) {
        case PXB_RGB24:
            return RunRgb8ToRgb24(to, from);
        case PXB_RGB32:
        case PXB_YV12:
        case PXB_YUY2:
        case PXB_I420:
        case PXB_RGB8:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

ResultCode From422(const ImageBuffer& to, const ImageBuffer& from) {
    switch (to.format) {
        case PXB_RGB24:
            return Run422ToRgb24(to, from);
        case PXB_YUY2:
            return Run422ToYuy2(to, from);
        default:
            return PXB_BAD_ARGUMENT;
    }
}

ResultCode FromAyuv(const ImageBuffer& to, const ImageBuffer& from) {
    if (to.format != PXB_RGB32) return PXB_BAD_ARGUMENT;
    return RunPacked(kAyuv32ToRgb32.Choose(), to, from);
}

ResultCode FromNv12(const ImageBuffer& to, const ImageBuffer& from) {
    if (to.format != PXB_RGB32) return PXB_BAD_ARGUMENT;
    return RunNv12ToRgb32(to, from);
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
            return FromRgb8(to, from);
        case PXB_YUV422:
            return From422(to, from);
        case PXB_AYUV32:
            return FromAyuv(to, from);
        case PXB_NV12:
            return FromNv12(to, from);
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
