// The rows: every supported pair, the channels and the fills, and what other files add.
#include "bench/rows.h"

#include "bench/blend_rows.h"
#include "bench/flip_rows.h"
#include "bench/rotate_rows.h"
#include "bench/scale_rows.h"

namespace pxb::bench {
namespace {

constexpr Target kNone = {};
constexpr Target kLevel = {Reference::kPeerOrCopy, 1};
constexpr Target kLikeMemset = {Reference::kCopy, 1};

constexpr Target Peer(double at_1920x1080, double at_3840x2160 = 0) {
    return {Reference::kPeer, at_1920x1080, at_3840x2160};
}

const Row kRows[] = {
    {"I420->RGB32", Job::kConvert, PXB_I420, PXB_RGB32, Peer(1.2)},
    {"I420->RGB24", Job::kConvert, PXB_I420, PXB_RGB24, Peer(1.3)},
    {"YV12->RGB32", Job::kConvert, PXB_YV12, PXB_RGB32, kNone},
    {"YV12->RGB24", Job::kConvert, PXB_YV12, PXB_RGB24, kNone},
    {"YUY2->RGB32", Job::kConvert, PXB_YUY2, PXB_RGB32, Peer(1.2)},
    {"YUY2->RGB24", Job::kConvert, PXB_YUY2, PXB_RGB24, Peer(1.3)},
    {"YUV422->RGB24", Job::kConvert, PXB_YUV422, PXB_RGB24, Peer(1.3)},
    {"NV12->RGB32", Job::kConvert, PXB_NV12, PXB_RGB32, Peer(1.2)},
    {"AYUV32->RGB32", Job::kConvert, PXB_AYUV32, PXB_RGB32, kNone},
    {"RGB32->I420", Job::kConvert, PXB_RGB32, PXB_I420, Peer(1)},
    {"RGB24->I420", Job::kConvert, PXB_RGB24, PXB_I420, Peer(1.1, 1.4)},
    {"RGB32->YV12", Job::kConvert, PXB_RGB32, PXB_YV12, kNone},
    {"RGB24->YV12", Job::kConvert, PXB_RGB24, PXB_YV12, kNone},
    {"RGB32->YUY2", Job::kConvert, PXB_RGB32, PXB_YUY2, Peer(2)},
    {"RGB24->YUY2", Job::kConvert, PXB_RGB24, PXB_YUY2, Peer(3)},
    {"RGB32->NV12", Job::kConvert, PXB_RGB32, PXB_NV12, Peer(1.5)},
    {"RGB32->AYUV32", Job::kConvert, PXB_RGB32, PXB_AYUV32, kNone},
    {"RGB24->RGB32", Job::kConvert, PXB_RGB24, PXB_RGB32, kLevel},
    {"RGB32->RGB24", Job::kConvert, PXB_RGB32, PXB_RGB24, kLevel},
    {"RGB8->RGB24", Job::kConvert, PXB_RGB8, PXB_RGB24, kLevel},
    {"RGB24->RGB24", Job::kConvert, PXB_RGB24, PXB_RGB24, kLevel},
    {"RGB32->RGB32", Job::kConvert, PXB_RGB32, PXB_RGB32, kLevel},
    {"YUY2->YUY2", Job::kConvert, PXB_YUY2, PXB_YUY2, kLevel},
    {"I420->I420", Job::kConvert, PXB_I420, PXB_I420, kLevel},
    {"I420->YV12", Job::kConvert, PXB_I420, PXB_YV12, kLevel},
    {"YV12->I420", Job::kConvert, PXB_YV12, PXB_I420, kLevel},
    {"YV12->YV12", Job::kConvert, PXB_YV12, PXB_YV12, kLevel},
    {"I420->YUY2", Job::kConvert, PXB_I420, PXB_YUY2, kLevel},
    {"YV12->YUY2", Job::kConvert, PXB_YV12, PXB_YUY2, kNone},
    {"YUY2->I420", Job::kConvert, PXB_YUY2, PXB_I420, Peer(1.1)},
    {"YUY2->YV12", Job::kConvert, PXB_YUY2, PXB_YV12, kNone},
    {"YUY2->YUV422", Job::kConvert, PXB_YUY2, PXB_YUV422, Peer(1.1)},
    {"YUV422->YUY2", Job::kConvert, PXB_YUV422, PXB_YUY2, kLevel},
    {"alpha of RGB32", Job::kChannel1, PXB_RGB32, PXB_RGB8, kLevel},
    {"grey of RGB24", Job::kChannel1, PXB_RGB24, PXB_RGB8, Peer(1.5)},
    {"luma of RGB32", Job::kChannel5, PXB_RGB32, PXB_RGB8, kNone},
    {"luma of RGB24", Job::kChannel5, PXB_RGB24, PXB_RGB8, kNone},
    {"fill RGB24", Job::kFill, PXB_RGB24, PXB_RGB24, Peer(1.3)},
    {"fill RGB32", Job::kFill, PXB_RGB32, PXB_RGB32, kLikeMemset},
    {"fill I420", Job::kFill, PXB_I420, PXB_I420, kLikeMemset},
    {"fill YUY2", Job::kFill, PXB_YUY2, PXB_YUY2, kLikeMemset},
    {"fill RGB8", Job::kFill, PXB_RGB8, PXB_RGB8, kLikeMemset},
};

// Distances from a page boundary: multiples of 64, as PxbNew gives them.
constexpr std::size_t kOffsets[Scene::kPlaces][2] = {{0, 2048}, {576, 3136}, {1216, 320}};

}  // namespace

double Target::At(int width, int height) const {
    if (width == 1920 && height == 1080) return at_1920x1080;
    if (width == 3840 && height == 2160) return at_3840x2160;
    return width == 320 && height == 240 ? at_320x240 : 0;
}

std::span<const Row> Rows() {
    static const std::vector<Row> rows = [] {
        std::vector<Row> all(std::begin(kRows), std::end(kRows));
        for (const std::vector<Row>& family : {ScaleRows(), RotateRows(), FlipRows(), BlendRows()})
            all.insert(all.end(), family.begin(), family.end());
        return all;
    }();
    return rows;
}

std::vector<Size> SizesOf(const Row& row, std::span<const Size> asked) {
    if (row.task.destination.width) return {row.task.destination};
    return {asked.begin(), asked.end()};
}

Scene::Scene(const Row& row, int width, int height, int place)
    : src(row.source, row.task.source.width ? row.task.source.width : width,
          row.task.source.height ? row.task.source.height : height, kOffsets[place][0]),
      dst(row.destination, row.task.turned ? height : width, row.task.turned ? width : height,
          kOffsets[place][1]),
      between(PXB_RGB32, width, height, 0) {}

std::int32_t Run(const Row& row, Scene& scene) {
    ImageBuffer* const dst = &scene.dst.record;
    switch (row.job) {
        case Job::kConvert:
            return PxbColorSpaceConv(dst, &scene.src.record);
        case Job::kChannel1:
            return PxbChannelGet(dst, &scene.src.record, 1);
        case Job::kChannel5:
            return PxbChannelGet(dst, &scene.src.record, 5);
        case Job::kFill:
            return PxbFillColor(dst, kFillColor);
        case Job::kTask:
            break;
    }
    return row.task.run(scene);
}

}  // namespace pxb::bench
