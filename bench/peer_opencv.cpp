// OpenCV's core and imgproc, on one thread.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "bench/peers.h"
#include "core/studio_color.h"

namespace pxb::bench {
namespace {

struct Entry {
    Job job;
    int source, destination;
    int code;
};

constexpr Entry kCodes[] = {
    {Job::kConvert, PXB_I420, PXB_RGB32, cv::COLOR_YUV2BGRA_I420},
    {Job::kConvert, PXB_I420, PXB_RGB24, cv::COLOR_YUV2BGR_I420},
    {Job::kConvert, PXB_YV12, PXB_RGB32, cv::COLOR_YUV2BGRA_YV12},
    {Job::kConvert, PXB_YV12, PXB_RGB24, cv::COLOR_YUV2BGR_YV12},
    {Job::kConvert, PXB_YUY2, PXB_RGB32, cv::COLOR_YUV2BGRA_YUY2},
    {Job::kConvert, PXB_YUY2, PXB_RGB24, cv::COLOR_YUV2BGR_YUY2},
    {Job::kConvert, PXB_NV12, PXB_RGB32, cv::COLOR_YUV2BGRA_NV12},
    {Job::kConvert, PXB_RGB32, PXB_I420, cv::COLOR_BGRA2YUV_I420},
    {Job::kConvert, PXB_RGB24, PXB_I420, cv::COLOR_BGR2YUV_I420},
    {Job::kConvert, PXB_RGB32, PXB_YV12, cv::COLOR_BGRA2YUV_YV12},
    {Job::kConvert, PXB_RGB24, PXB_YV12, cv::COLOR_BGR2YUV_YV12},
    {Job::kConvert, PXB_RGB24, PXB_RGB32, cv::COLOR_BGR2BGRA},
    {Job::kConvert, PXB_RGB32, PXB_RGB24, cv::COLOR_BGRA2BGR},
    {Job::kConvert, PXB_RGB8, PXB_RGB24, cv::COLOR_GRAY2BGR},
    {Job::kChannel1, PXB_RGB24, PXB_RGB8, cv::COLOR_BGR2GRAY},
};

// The whole image as one matrix; 4:2:0 images as rows of bytes, chroma below the luma.
cv::Mat MatrixOf(const Frame& frame) {
    const int width = frame.width(), height = frame.height();
    switch (frame.record.format) {
        case PXB_YV12:
        case PXB_I420:
        case PXB_NV12:
            return cv::Mat(height * 3 / 2, width, CV_8UC1, frame.data[0]);
        default:
            return cv::Mat(height, width, CV_8UC(frame.record.bitsPerPixel / 8), frame.data[0]);
    }
}

Work Convert(Scene& scene, int code) {
    return [src = MatrixOf(scene.src), dst = MatrixOf(scene.dst), code]() mutable {
        cv::cvtColor(src, dst, code);
    };
}

Work Copy(Scene& scene) {
    return [src = MatrixOf(scene.src), dst = MatrixOf(scene.dst)]() mutable { src.copyTo(dst); };
}

Work ExtractAlpha(Scene& scene) {
    return [src = MatrixOf(scene.src), dst = MatrixOf(scene.dst)]() mutable {
        cv::extractChannel(src, dst, 3);
    };
}

Work Fill(Scene& scene) {
    constexpr std::uint8_t kR = kFillColor & 0xFF, kG = kFillColor >> 8 & 0xFF,
                           kB = kFillColor >> 16 & 0xFF;
    const int width = scene.dst.width(), height = scene.dst.height();
    cv::Mat dst = MatrixOf(scene.dst);
    cv::Scalar color(kB, kG, kR, 0);
    constexpr int kGrey = (kR + kG + kB) / 3;
    if (scene.dst.record.format == PXB_RGB8) color = cv::Scalar(kGrey);
    if (scene.dst.record.format == PXB_YUY2) {  // pairs of pixels
        const Yuv yuv = StudioYuv({kR, kG, kB});
        color = cv::Scalar(yuv.y, yuv.u, yuv.y, yuv.v);
        dst = cv::Mat(height, width / 2, CV_8UC4, scene.dst.data[0]);
    }
    return [dst, color]() mutable { dst.setTo(color); };
}

}  // namespace

PeerWork PrepareOpencv(const Row& row, Scene& scene) {
    cv::setNumThreads(1);
    if (row.job == Job::kFill)
        return row.destination == PXB_I420 ? PeerWork{} : PeerWork{Fill(scene)};
    if (row.job == Job::kChannel1 && row.source == PXB_RGB32) return {ExtractAlpha(scene)};
    if (row.job == Job::kConvert && row.source == row.destination) return {Copy(scene)};
    for (const Entry& entry : kCodes)
        if (entry.job == row.job && entry.source == row.source &&
            entry.destination == row.destination)
            return {Convert(scene, entry.code)};
    return {};
}

}  // namespace pxb::bench
