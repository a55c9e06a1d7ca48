// libswscale as a scaler between images of one format.
extern "C" {
#include <libavutil/log.h>
#include <libswscale/swscale.h>
}

#include <memory>

#include "bench/scale_rows.h"

namespace pxb::bench {
namespace {

AVPixelFormat PixelFormatOf(int format) {
    switch (format) {
        case PXB_RGB24:
            return AV_PIX_FMT_BGR24;
        case PXB_RGB32:
            return AV_PIX_FMT_BGRA;
        case PXB_RGB8:
            return AV_PIX_FMT_GRAY8;
        case PXB_I420:
            return AV_PIX_FMT_YUV420P;
        case PXB_YUY2:
            return AV_PIX_FMT_YUYV422;
        default:
            return AV_PIX_FMT_NONE;
    }
}

int FlagsOf(Filter filter) {
    switch (filter) {
        case Filter::kNearest:
            return SWS_POINT;
        case Filter::kBilinear:
            return SWS_FAST_BILINEAR;
        default:
            return SWS_AREA;
    }
}

}  // namespace

PeerWork ScaleWithSwscale(Filter filter, Scene& scene) {
    av_log_set_level(AV_LOG_ERROR);
    const AVPixelFormat format = PixelFormatOf(scene.src.record.format);
    const std::shared_ptr<SwsContext> context(
        sws_getContext(scene.src.width(), scene.src.height(), format, scene.dst.width(),
                       scene.dst.height(), format, FlagsOf(filter), nullptr, nullptr, nullptr),
        sws_freeContext);
    if (!context) return {};
    return {[context, &scene] {
        sws_scale(context.get(), scene.src.data, scene.src.stride, 0, scene.src.height(),
                  scene.dst.data, scene.dst.stride);
    }};
}

}  // namespace pxb::bench
