// Turns by 90, 180, 270 and 30 degrees. Other libraries copy at quarter turns and at 180; ours blends
// at 180, where coordinates miss whole numbers by 1e-13, and its quarter turns end with copied edges.
#include "bench/rotate_rows.h"

#include <cmath>
#include <cstring>
#include <memory>
#include <numbers>
#include <utility>

#if defined(PXB_PEER_LIBYUV)
#include <libyuv.h>
#endif
#if defined(PXB_PEER_OPENCV)
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#if defined(PXB_PEER_PIXMAN)
#include <pixman.h>
#endif

namespace pxb::bench {
namespace {

// Of interleaved images, counter-clockwise; 4:2:0 images turn the other way.
struct Turn {
    int format, angle;

    bool IsPlanar() const { return format == PXB_I420; }
    bool IsQuarter() const { return angle % 180 == 90; }
    int Clockwise() const { return IsPlanar() || angle == 30 ? angle : 360 - angle; }
};

#if defined(PXB_PEER_LIBYUV)
PeerWork TurnByLibyuv(Scene& scene, Turn turn) {
    const auto mode = static_cast<libyuv::RotationMode>(turn.Clockwise());
    const Frame &src = scene.src, &dst = scene.dst;
    if (turn.IsPlanar())
        return {[=, &src, &dst] {
            libyuv::I420Rotate(src.data[0], src.stride[0], src.data[1], src.stride[1], src.data[2],
                               src.stride[2], dst.data[0], dst.stride[0], dst.data[1],
                               dst.stride[1], dst.data[2], dst.stride[2], src.width(), src.height(),
                               mode);
        }};
    if (turn.format != PXB_RGB32 || turn.angle == 30) return {};
    return {[=, &src, &dst] {
        libyuv::ARGBRotate(src.data[0], src.stride[0], dst.data[0], dst.stride[0], src.width(),
                           src.height(), mode);
    }};
}
#endif

#if defined(PXB_PEER_OPENCV)
cv::Mat PlaneOf(const Frame& frame, int plane) {
    const bool planar = frame.data[1] != nullptr;
    const int bytes = planar ? 1 : frame.record.bitsPerPixel / 8;
    return cv::Mat(plane ? frame.height() / 2 : frame.height(), frame.stride[plane] / bytes,
                   CV_8UC(bytes), frame.data[plane]);
}

PeerWork TurnByOpencv(Scene& scene, Turn turn) {
    cv::setNumThreads(1);
    if (turn.angle == 30) {
        const cv::Mat src = PlaneOf(scene.src, 0);
        const cv::Point2f centre(static_cast<float>(src.cols) / 2,
                                 static_cast<float>(src.rows) / 2);
        return {[=, map = cv::getRotationMatrix2D(centre, turn.angle, 1),
                 dst = PlaneOf(scene.dst, 0)]() mutable {
            cv::warpAffine(src, dst, map, dst.size(), cv::INTER_LINEAR, cv::BORDER_TRANSPARENT);
        }};
    }
    const int code = turn.angle == 180        ? cv::ROTATE_180
                     : turn.Clockwise() == 90 ? cv::ROTATE_90_CLOCKWISE
                                              : cv::ROTATE_90_COUNTERCLOCKWISE;
    const int calls = turn.IsPlanar() ? 3 : 1;
    std::vector<std::pair<cv::Mat, cv::Mat>> planes(calls);
    for (int i = 0; i < calls; ++i) planes[i] = {PlaneOf(scene.src, i), PlaneOf(scene.dst, i)};
    return {[=]() mutable {
                for (auto& [src, dst] : planes) cv::rotate(src, dst, code);
            },
            calls};
}
#endif

#if defined(PXB_PEER_PIXMAN)
PeerWork TurnByPixman(Scene& scene, Turn turn) {
    if (turn.IsPlanar() || scene.src.stride[0] % 4 || scene.dst.stride[0] % 4) return {};
    const pixman_format_code_t code = turn.format == PXB_RGB24 ? PIXMAN_r8g8b8 : PIXMAN_x8r8g8b8;
    const auto image = [=](const Frame& frame) {
        return std::shared_ptr<pixman_image_t>(
            pixman_image_create_bits(code, frame.width(), frame.height(),
                                     reinterpret_cast<std::uint32_t*>(frame.data[0]),
                                     frame.stride[0]),
            pixman_image_unref);
    };
    const int width = scene.dst.width(), height = scene.dst.height();
    const double radians = turn.angle * std::numbers::pi / 180;
    pixman_f_transform map;
    pixman_f_transform_init_translate(&map, -0.5 * width, -0.5 * height);
    pixman_f_transform_rotate(&map, nullptr, std::cos(radians), std::sin(radians));
    pixman_f_transform_translate(&map, nullptr, 0.5 * scene.src.width(), 0.5 * scene.src.height());
    pixman_transform_t fixed;
    pixman_transform_from_pixman_f_transform(&fixed, &map);
    const auto src = image(scene.src), dst = image(scene.dst);
    pixman_image_set_transform(src.get(), &fixed);
    pixman_image_set_filter(
        src.get(), turn.angle == 30 ? PIXMAN_FILTER_BILINEAR : PIXMAN_FILTER_NEAREST, nullptr, 0);
    return {[=] {
        // Over leaves what lies outside the source.
        pixman_image_composite32(PIXMAN_OP_OVER, src.get(), nullptr, dst.get(), 0, 0, 0, 0, 0, 0,
                                 width, height);
    }};
}
#endif

struct Targets {
    double at_1080, at_320;
};

// Of AVX2; wider registers should do better still.
Targets TargetsOf(Turn turn) {
    const bool backward = turn.angle == 270;
    if (turn.IsPlanar()) return turn.IsQuarter() ? Targets{1.5, 1.2} : Targets{1, 1};
    if (turn.angle == 180) return {0.9, 0.5};
    if (turn.format == PXB_RGB32) return turn.IsQuarter() ? Targets{1.5, 3} : Targets{2.9, 2.6};
    if (turn.IsQuarter()) return backward ? Targets{3, 4} : Targets{2.2, 2.5};
    return {3, 2.8};
}

Row RowOf(const char* format_name, Turn turn) {
    Row row = {"rotate " + std::string(format_name) + " " + std::to_string(turn.angle),
               Job::kTask,
               turn.format,
               turn.format,
               {}};
    const auto [at_1080, at_320] = TargetsOf(turn);
    row.target.at_1920x1080 = at_1080;
    row.target.at_320x240 = at_320;
    if (turn.angle != 180) row.target.at_3840x2160 = 0.95;
    row.task.turned = turn.IsQuarter();
    row.task.run = [angle = turn.angle](Scene& scene) {
        return PxbRotate(&scene.dst.record, &scene.src.record, angle);
    };
    row.task.begin = [](Scene& scene) { std::memset(scene.dst.record.data, 128, scene.dst.bytes); };
    [[maybe_unused]] auto& contenders = row.task.contenders;
#if defined(PXB_PEER_LIBYUV)
    contenders.push_back({"libyuv", [=](Scene& scene) { return TurnByLibyuv(scene, turn); }});
#endif
#if defined(PXB_PEER_OPENCV)
    contenders.push_back({"opencv", [=](Scene& scene) { return TurnByOpencv(scene, turn); }});
#endif
#if defined(PXB_PEER_PIXMAN)
    contenders.push_back({"pixman", [=](Scene& scene) { return TurnByPixman(scene, turn); }});
#endif
    return row;
}

}  // namespace

std::vector<Row> RotateRows() {
    std::vector<Row> rows;
    for (const auto& [name, format] :
         {std::pair{"RGB32", PXB_RGB32}, {"RGB24", PXB_RGB24}, {"I420", PXB_I420}})
        for (const int angle : {90, 180, 270, 30})
            if (format != PXB_I420 || angle != 30) rows.push_back(RowOf(name, {format, angle}));
    return rows;
}

}  // namespace pxb::bench
