// libswscale, as a converter: equal sizes and its fastest filter.
extern "C" {
#include <libavutil/log.h>
#include <libswscale/swscale.h>
}

#include <memory>

#include "bench/peers.h"

namespace pxb::bench {
namespace {

AVPixelFormat PixelFormatOf(int format) {
    switch (format) {
        case PXB_RGB24:
            return AV_PIX_FMT_BGR24;
        case PXB_RGB32:
            return AV_PIX_FMT_BGRA;
        case PXB_YV12:
        case PXB_I420:
            return AV_PIX_FMT_YUV420P;
        case PXB_YUY2:
            return AV_PIX_FMT_YUYV422;
        case PXB_RGB8:
            return AV_PIX_FMT_GRAY8;  // full range
        case PXB_YUV422:
            return AV_PIX_FMT_YUV422P;
        case PXB_NV12:
            return AV_PIX_FMT_NV12;
        default:
            return AV_PIX_FMT_NONE;
    }
}

bool Has(const Row& row) {
    if (row.job == Job::kChannel1) return row.source == PXB_RGB24;
    return row.job == Job::kConvert && PixelFormatOf(row.source) != AV_PIX_FMT_NONE &&
           PixelFormatOf(row.destination) != AV_PIX_FMT_NONE;
}

}  // namespace

PeerWork PrepareSwscale(const Row& row, Scene& scene) {
    if (!Has(row)) return {};
    av_log_set_level(AV_LOG_ERROR);
    const int width = scene.src.width(), height = scene.src.height();
    const std::shared_ptr<SwsContext> context(
        sws_getContext(width, height, PixelFormatOf(row.source), width, height,
                       PixelFormatOf(row.destination), SWS_FAST_BILINEAR, nullptr, nullptr,
                       nullptr),
        sws_freeContext);
    if (!context) return {};
    return {[context, &scene] {
        sws_scale(context.get(), scene.src.data, scene.src.stride, 0, scene.src.height(),
                  scene.dst.data, scene.dst.stride);
    }};
}

}  // namespace pxb::bench
