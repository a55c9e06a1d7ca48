// OpenCV as a scaler, on one thread; planes one by one.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "bench/scale_rows.h"

namespace pxb::bench {
namespace {

int InterpolationOf(Filter filter) {
    switch (filter) {
        case Filter::kNearest:
            return cv::INTER_NEAREST;
        case Filter::kBilinear:
            return cv::INTER_LINEAR;
        default:
            return cv::INTER_AREA;
    }
}

std::vector<cv::Mat> PlanesOf(const Frame& frame) {
    const int width = frame.width(), height = frame.height();
    if (frame.record.format != PXB_I420)
        return {cv::Mat(height, width, CV_8UC(frame.record.bitsPerPixel / 8), frame.data[0])};
    return {cv::Mat(height, width, CV_8UC1, frame.data[0]),
            cv::Mat(height / 2, width / 2, CV_8UC1, frame.data[1]),
            cv::Mat(height / 2, width / 2, CV_8UC1, frame.data[2])};
}

}  // namespace

PeerWork ScaleWithOpencv(Filter filter, Scene& scene) {
    if (scene.src.record.format == PXB_YUY2) return {};
    cv::setNumThreads(1);
    const auto run = [src = PlanesOf(scene.src), dst = PlanesOf(scene.dst),
                      interpolation = InterpolationOf(filter)]() mutable {
        for (std::size_t i = 0; i < src.size(); ++i)
            cv::resize(src[i], dst[i], dst[i].size(), 0, 0, interpolation);
    };
    return {run, static_cast<int>(PlanesOf(scene.src).size())};
}

}  // namespace pxb::bench
