// libyuv as a scaler. Packed 4:2:2 goes through planes and back.
#include <libyuv.h>
#include <libyuv/scale_rgb.h>

#include <memory>

#include "bench/scale_rows.h"

namespace pxb::bench {
namespace {

libyuv::FilterMode ModeOf(Filter filter) {
    switch (filter) {
        case Filter::kNearest:
            return libyuv::kFilterNone;
        case Filter::kBilinear:
            return libyuv::kFilterBilinear;
        default:
            return libyuv::kFilterBox;
    }
}

template <auto kFunction>
PeerWork OnePlane(Scene& scene, libyuv::FilterMode mode) {
    return {[&src = scene.src, &dst = scene.dst, mode] {
        kFunction(src.data[0], src.stride[0], src.width(), src.height(), dst.data[0], dst.stride[0],
                  dst.width(), dst.height(), mode);
    }};
}

template <auto kFunction>
void ThreePlanes(const Frame& src, const Frame& dst, libyuv::FilterMode mode) {
    kFunction(src.data[0], src.stride[0], src.data[1], src.stride[1], src.data[2], src.stride[2],
              src.width(), src.height(), dst.data[0], dst.stride[0], dst.data[1], dst.stride[1],
              dst.data[2], dst.stride[2], dst.width(), dst.height(), mode);
}

PeerWork Packed(Scene& scene, libyuv::FilterMode mode) {
    const auto planes_of = [](const Frame& frame) {
        return std::make_shared<Frame>(PXB_YUV422, frame.width(), frame.height(), 0);
    };
    const auto run = [&scene, mode, from = planes_of(scene.src), to = planes_of(scene.dst)] {
        const Frame &src = scene.src, &dst = scene.dst;
        libyuv::YUY2ToI422(src.data[0], src.stride[0], from->data[0], from->stride[0],
                           from->data[1], from->stride[1], from->data[2], from->stride[2],
                           src.width(), src.height());
        ThreePlanes<libyuv::I422Scale>(*from, *to, mode);
        libyuv::I422ToYUY2(to->data[0], to->stride[0], to->data[1], to->stride[1], to->data[2],
                           to->stride[2], dst.data[0], dst.stride[0], dst.width(), dst.height());
    };
    return {run, 3};
}

}  // namespace

PeerWork ScaleWithLibyuv(Filter filter, Scene& scene) {
    const libyuv::FilterMode mode = ModeOf(filter);
    switch (scene.src.record.format) {
        case PXB_RGB24:
            return OnePlane<libyuv::RGBScale>(scene, mode);
        case PXB_RGB32:
            return OnePlane<libyuv::ARGBScale>(scene, mode);
        case PXB_RGB8:
            return OnePlane<libyuv::ScalePlane>(scene, mode);
        case PXB_I420:
            return {[&, mode] { ThreePlanes<libyuv::I420Scale>(scene.src, scene.dst, mode); }};
        case PXB_YUY2:
            return Packed(scene, mode);
        default:
            return {};
    }
}

}  // namespace pxb::bench
