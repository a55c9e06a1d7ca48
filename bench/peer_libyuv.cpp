// libyuv. Its ARGB is B G R A in memory, our RGB32, and its RGB24 is ours.
#include <libyuv.h>

#include <tuple>
#include <utility>

#include "bench/blend_rows.h"
#include "bench/peers.h"
#include "core/studio_color.h"

namespace pxb::bench {
namespace {

template <std::size_t... kPlane>
auto Planes(const Frame& frame, std::index_sequence<kPlane...>) {
    return std::tuple_cat(std::make_tuple(frame.data[kPlane], frame.stride[kPlane])...);
}

// A function of the library's usual shape: planes read, planes written, width, height.
template <auto kFunction, std::size_t kRead, std::size_t kWritten>
void Call(const Frame& src, const Frame& dst) {
    std::apply(kFunction, std::tuple_cat(Planes(src, std::make_index_sequence<kRead>()),
                                         Planes(dst, std::make_index_sequence<kWritten>()),
                                         std::make_tuple(src.width(), src.height())));
}

template <auto kFunction, std::size_t kRead, std::size_t kWritten>
void Direct(Scene& scene) {
    Call<kFunction, kRead, kWritten>(scene.src, scene.dst);
}

template <auto kFirst, auto kSecond>
void ThroughRgb32(Scene& scene) {
    Call<kFirst, 1, 1>(scene.src, scene.between);
    Call<kSecond, 1, 1>(scene.between, scene.dst);
}

void CopyPacked(Scene& scene) {
    libyuv::CopyPlane(scene.src.data[0], scene.src.stride[0], scene.dst.data[0],
                      scene.dst.stride[0], scene.src.stride[0], scene.src.height());
}

void Rgb8ToRgb24(Scene& scene) {
    const auto [grey, stride] = std::pair(scene.src.data[0], scene.src.stride[0]);
    libyuv::MergeRGBPlane(grey, stride, grey, stride, grey, stride, scene.dst.data[0],
                          scene.dst.stride[0], scene.src.width(), scene.src.height());
}

Yuv FillYuv() {
    return StudioYuv({kFillColor & 0xFF, kFillColor >> 8 & 0xFF, kFillColor >> 16 & 0xFF});
}

void FillWords(const Frame& dst, int words_per_row, unsigned b0, unsigned b1, unsigned b2,
               unsigned b3) {
    libyuv::ARGBRect(dst.data[0], dst.stride[0], 0, 0, words_per_row, dst.height(),
                     b0 | b1 << 8 | b2 << 16 | b3 << 24);
}

void FillRgb32(Scene& scene) {
    FillWords(scene.dst, scene.dst.width(), kFillColor >> 16, kFillColor >> 8 & 0xFF,
              kFillColor & 0xFF, 0);
}

void FillYuy2(Scene& scene) {
    const Yuv color = FillYuv();
    FillWords(scene.dst, scene.dst.width() / 2, color.y, color.u, color.y, color.v);
}

void FillI420(Scene& scene) {
    const Frame& dst = scene.dst;
    const Yuv color = FillYuv();
    libyuv::I420Rect(dst.data[0], dst.stride[0], dst.data[1], dst.stride[1], dst.data[2],
                     dst.stride[2], 0, 0, dst.width(), dst.height(), color.y, color.u, color.v);
}

void FillRgb8(Scene& scene) {
    constexpr unsigned kSum = (kFillColor & 0xFF) + (kFillColor >> 8 & 0xFF) + (kFillColor >> 16);
    libyuv::SetPlane(scene.dst.data[0], scene.dst.stride[0], scene.dst.width(), scene.dst.height(),
                     kSum / 3);
}

struct Entry {
    Job job;
    int source, destination;
    void (*run)(Scene& scene);
    int calls = 1;
};

// YV12 frames serve as I420: their planes are listed in the same order.
constexpr Entry kEntries[] = {
    {Job::kConvert, PXB_I420, PXB_RGB32, Direct<libyuv::I420ToARGB, 3, 1>},
    {Job::kConvert, PXB_I420, PXB_RGB24, Direct<libyuv::I420ToRGB24, 3, 1>},
    {Job::kConvert, PXB_YUY2, PXB_RGB32, Direct<libyuv::YUY2ToARGB, 1, 1>},
    {Job::kConvert, PXB_YUY2, PXB_RGB24, ThroughRgb32<libyuv::YUY2ToARGB, libyuv::ARGBToRGB24>, 2},
    {Job::kConvert, PXB_YUV422, PXB_RGB24, Direct<libyuv::I422ToRGB24, 3, 1>},
    {Job::kConvert, PXB_NV12, PXB_RGB32, Direct<libyuv::NV12ToARGB, 2, 1>},
    {Job::kConvert, PXB_RGB32, PXB_I420, Direct<libyuv::ARGBToI420, 1, 3>},
    {Job::kConvert, PXB_RGB24, PXB_I420, Direct<libyuv::RGB24ToI420, 1, 3>},
    {Job::kConvert, PXB_RGB32, PXB_YUY2, Direct<libyuv::ARGBToYUY2, 1, 1>},
    {Job::kConvert, PXB_RGB24, PXB_YUY2, ThroughRgb32<libyuv::RGB24ToARGB, libyuv::ARGBToYUY2>, 2},
    {Job::kConvert, PXB_RGB32, PXB_NV12, Direct<libyuv::ARGBToNV12, 1, 2>},
    {Job::kConvert, PXB_RGB24, PXB_RGB32, Direct<libyuv::RGB24ToARGB, 1, 1>},
    {Job::kConvert, PXB_RGB32, PXB_RGB24, Direct<libyuv::ARGBToRGB24, 1, 1>},
    {Job::kConvert, PXB_RGB8, PXB_RGB24, Rgb8ToRgb24},
    {Job::kConvert, PXB_RGB24, PXB_RGB24, CopyPacked},
    {Job::kConvert, PXB_RGB32, PXB_RGB32, Direct<libyuv::ARGBCopy, 1, 1>},
    {Job::kConvert, PXB_YUY2, PXB_YUY2, CopyPacked},
    {Job::kConvert, PXB_I420, PXB_I420, Direct<libyuv::I420Copy, 3, 3>},
    {Job::kConvert, PXB_I420, PXB_YUY2, Direct<libyuv::I420ToYUY2, 3, 1>},
    {Job::kConvert, PXB_YUY2, PXB_I420, Direct<libyuv::YUY2ToI420, 1, 3>},
    {Job::kConvert, PXB_YUY2, PXB_YUV422, Direct<libyuv::YUY2ToI422, 1, 3>},
    {Job::kConvert, PXB_YUV422, PXB_YUY2, Direct<libyuv::I422ToYUY2, 3, 1>},
    {Job::kChannel1, PXB_RGB32, PXB_RGB8, Direct<libyuv::ARGBExtractAlpha, 1, 1>},
    {Job::kChannel1, PXB_RGB24, PXB_RGB8, Direct<libyuv::RGB24ToJ400, 1, 1>},
    {Job::kChannel5, PXB_RGB32, PXB_RGB8, Direct<libyuv::ARGBToI400, 1, 1>},
    {Job::kChannel5, PXB_RGB24, PXB_RGB8, ThroughRgb32<libyuv::RGB24ToARGB, libyuv::ARGBToI400>, 2},
    {Job::kFill, PXB_RGB32, PXB_RGB32, FillRgb32},
    {Job::kFill, PXB_I420, PXB_I420, FillI420},
    {Job::kFill, PXB_YUY2, PXB_YUY2, FillYuy2},
    {Job::kFill, PXB_RGB8, PXB_RGB8, FillRgb8},
};

int PlanarAsI420(int format) {
    return format == PXB_YV12 ? PXB_I420 : format;
}

}  // namespace

PeerWork PrepareLibyuv(const Row& row, Scene& scene) {
    for (const Entry& entry : kEntries)
        if (entry.job == row.job && entry.source == PlanarAsI420(row.source) &&
            entry.destination == PlanarAsI420(row.destination))
            return {[run = entry.run, &scene] { run(scene); }, entry.calls};
    return {};
}

// ---- Blending ----

PeerWork BlendOwnAlphaByLibyuv(Scene& scene) {
    const Frame& dst = scene.dst;
    return {[src = Premultiplied(scene), &dst] {
        libyuv::ARGBBlend(src->data[0], src->stride[0], dst.data[0], dst.stride[0], dst.data[0],
                          dst.stride[0], dst.width(), dst.height());
    }};
}

// Its blend of planes wants an alpha for each byte.
PeerWork BlendBytesByLibyuv(Scene& scene) {
    const ImageBuffer mask = MaskOf(scene);
    auto repeated = std::make_shared<Frame>(PXB_RGB32, mask.width, mask.height, 0);
    return {[mask, repeated, &scene] {
                std::uint8_t *const all = repeated->data[0], *const m = mask.data;
                const int stride = scene.dst.stride[0], w = mask.width, h = mask.height;
                static const std::vector<std::uint8_t> kZeros(1 << 14);  // one row, again and again
                if (stride == 2 * w)
                    libyuv::MergeUVPlane(m, w, m, w, all, stride, w, h);
                else if (stride == 3 * w)
                    libyuv::MergeRGBPlane(m, w, m, w, m, w, all, stride, w, h);
                else
                    libyuv::MergeARGBPlane(m, w, m, w, m, w, kZeros.data(), 0, all, stride, w, h);
                libyuv::BlendPlane(scene.src.data[0], scene.src.stride[0], scene.dst.data[0],
                                   stride, all, stride, scene.dst.data[0], stride, stride, h);
            },
            2};
}

PeerWork BlendI420ByLibyuv(Scene& scene) {
    const Frame &src = scene.src, &dst = scene.dst;
    return {[mask = MaskOf(scene), &src, &dst] {
        libyuv::I420Blend(src.data[0], src.stride[0], src.data[1], src.stride[1], src.data[2],
                          src.stride[2], dst.data[0], dst.stride[0], dst.data[1], dst.stride[1],
                          dst.data[2], dst.stride[2], mask.data, mask.stride, dst.data[0],
                          dst.stride[0], dst.data[1], dst.stride[1], dst.data[2], dst.stride[2],
                          dst.width(), dst.height());
    }};
}

}  // namespace pxb::bench
