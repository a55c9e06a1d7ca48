// Mirrors. The library works in place; most others read a source and write a destination, which
// touches twice the memory. OpenCV does both.
#include "bench/flip_rows.h"

#include <cstring>
#include <utility>

#if defined(PXB_PEER_LIBYUV)
#include <libyuv.h>
#endif
#if defined(PXB_PEER_OPENCV)
#include <opencv2/core.hpp>
#endif
#if defined(PXB_PEER_PIXMAN)
#include <pixman.h>
#endif

namespace pxb::bench {
namespace {

// Planes, of which only 4:2:0 has more than one. Without other libraries nobody asks.
[[maybe_unused]] int PlaneCount(const Frame& frame) {
    return frame.data[1] ? 3 : 1;
}
[[maybe_unused]] int RowsOfPlane(const Frame& frame, int plane) {
    return plane ? frame.height() / 2 : frame.height();
}

#if defined(PXB_PEER_LIBYUV)
PeerWork MirrorByLibyuv(Scene& scene) {
    const auto planes = [&scene](auto function, int width, int height) {
        const Frame &src = scene.src, &dst = scene.dst;
        return function(src.data[0], src.stride[0], dst.data[0], dst.stride[0], width, height);
    };
    const int width = scene.dst.width(), height = scene.dst.height();
    switch (scene.dst.record.format) {
        case PXB_RGB24:
            return {[=] { planes(libyuv::RGB24Mirror, width, height); }};
        case PXB_RGB32:
            return {[=] { planes(libyuv::ARGBMirror, width, height); }};
        case PXB_YUY2:  // groups as pixels of four bytes, whose luma then changes places
            return {[=, &scene] {
                        static constexpr std::uint8_t kSwap[] = {2,  1, 0, 3,  6,  5,  4,  7,
                                                                 10, 9, 8, 11, 14, 13, 12, 15};
                        planes(libyuv::ARGBMirror, width / 2, height);
                        const Frame& dst = scene.dst;
                        libyuv::ARGBShuffle(dst.data[0], dst.stride[0], dst.data[0], dst.stride[0],
                                            kSwap, width / 2, height);
                    },
                    2};
        default:
            return {[=, &src = scene.src, &dst = scene.dst] {
                libyuv::I420Mirror(src.data[0], src.stride[0], src.data[1], src.stride[1],
                                   src.data[2], src.stride[2], dst.data[0], dst.stride[0],
                                   dst.data[1], dst.stride[1], dst.data[2], dst.stride[2], width,
                                   height);
            }};
    }
}

// A copy of negative height.
PeerWork TurnByLibyuv(Scene& scene) {
    return {[&src = scene.src, &dst = scene.dst] {
                for (int i = 0; i < PlaneCount(dst); ++i)
                    libyuv::CopyPlane(src.data[i], src.stride[i], dst.data[i], dst.stride[i],
                                      dst.stride[i], -RowsOfPlane(dst, i));
            },
            PlaneCount(scene.dst)};
}
#endif

#if defined(PXB_PEER_OPENCV)
cv::Mat PlaneOf(const Frame& frame, int plane, int bytes) {
    return cv::Mat(RowsOfPlane(frame, plane), frame.stride[plane] / bytes, CV_8UC(bytes),
                   frame.data[plane]);
}

PeerWork FlipByOpencv(const Frame& from, const Frame& to, bool horizontal) {
    const bool groups = horizontal && to.record.format == PXB_YUY2;
    const int bytes = PlaneCount(to) > 1 ? 1 : groups ? 4 : to.record.bitsPerPixel / 8;
    std::vector<std::pair<cv::Mat, cv::Mat>> planes;
    planes.reserve(PlaneCount(to));
    for (int i = 0; i < PlaneCount(to); ++i)
        planes.emplace_back(PlaneOf(from, i, bytes), PlaneOf(to, i, bytes));
    cv::setNumThreads(1);
    return {[=]() mutable {
                for (auto& [src, dst] : planes) {
                    cv::flip(src, dst, horizontal);
                    if (groups) cv::mixChannels({dst}, {dst}, {0, 2, 2, 0});
                }
            },
            groups ? 2 : PlaneCount(to)};
}
#endif

#if defined(PXB_PEER_PIXMAN)
PeerWork FlipByPixman(Scene& scene, bool horizontal) {
    const int format = scene.dst.record.format;
    if (format != PXB_RGB24 && format != PXB_RGB32) return {};
    const pixman_format_code_t code = format == PXB_RGB24 ? PIXMAN_r8g8b8 : PIXMAN_x8r8g8b8;
    const int width = scene.dst.width(), height = scene.dst.height();
    if (scene.src.stride[0] % 4) return {};
    const auto image = [=](const Frame& frame) {
        return std::shared_ptr<pixman_image_t>(
            pixman_image_create_bits(code, width, height,
                                     reinterpret_cast<std::uint32_t*>(frame.data[0]),
                                     frame.stride[0]),
            pixman_image_unref);
    };
    pixman_transform_t transform;
    pixman_transform_init_scale(&transform, pixman_int_to_fixed(horizontal ? -1 : 1),
                                pixman_int_to_fixed(horizontal ? 1 : -1));
    pixman_transform_translate(&transform, nullptr, pixman_int_to_fixed(horizontal ? width : 0),
                               pixman_int_to_fixed(horizontal ? 0 : height));
    const auto src = image(scene.src), dst = image(scene.dst);
    pixman_image_set_transform(src.get(), &transform);
    return {[=] {
        pixman_image_composite32(PIXMAN_OP_SRC, src.get(), nullptr, dst.get(), 0, 0, 0, 0, 0, 0,
                                 width, height);
    }};
}
#endif

Row FlipRow(const char* format_name, int format, bool horizontal) {
    Row row = {std::string(horizontal ? "mirror " : "turn over ") + format_name,
               Job::kTask,
               format,
               format,
               {}};
    // RGB32 is what others are best at.
    const bool packed32 = format == PXB_RGB32;
    row.target.at_1920x1080 = !horizontal ? 0.95 : packed32 ? 1.05 : 2;
    row.target.at_320x240 = 1.2;
    row.target.at_3840x2160 = 0.95;
    row.task.begin = [](Scene& scene) {
        std::memcpy(scene.dst.record.data, scene.src.record.data, scene.dst.bytes);
    };
    row.task.run = [horizontal](Scene& scene) {
        ImageBuffer* const image = &scene.dst.record;
        return horizontal ? PxbFliphorizontal(image, nullptr) : PxbFlipvertical(image, nullptr);
    };
    [[maybe_unused]] auto& contenders = row.task.contenders;
#if defined(PXB_PEER_LIBYUV)
    contenders.push_back({"libyuv", horizontal ? MirrorByLibyuv : TurnByLibyuv});
#endif
#if defined(PXB_PEER_OPENCV)
    contenders.push_back(
        {"opencv", [=](Scene& scene) { return FlipByOpencv(scene.src, scene.dst, horizontal); }});
    contenders.push_back({"opencv in place", [=](Scene& scene) {
                              return FlipByOpencv(scene.dst, scene.dst, horizontal);
                          }});
#endif
#if defined(PXB_PEER_PIXMAN)
    contenders.push_back({"pixman", [=](Scene& scene) { return FlipByPixman(scene, horizontal); }});
#endif
    return row;
}

}  // namespace

std::vector<Row> FlipRows() {
    std::vector<Row> rows;
    for (const bool horizontal : {true, false})
        for (const auto& [name, format] : {std::pair{"RGB24", PXB_RGB24},
                                           {"RGB32", PXB_RGB32},
                                           {"I420", PXB_I420},
                                           {"YUY2", PXB_YUY2}})
            rows.push_back(FlipRow(name, format, horizontal));
    return rows;
}

}  // namespace pxb::bench
