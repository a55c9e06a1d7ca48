#include "bench/blend_rows.h"

#if defined(PXB_PEER_LIBYUV)
#define PXB_LIBYUV(prepare) {"libyuv", prepare},
#else
#define PXB_LIBYUV(prepare)
#endif
#if defined(PXB_PEER_PIXMAN)
#define PXB_PIXMAN(prepare) {"pixman", prepare},
#else
#define PXB_PIXMAN(prepare)
#endif

namespace pxb::bench {
namespace {

// What the overlay falls on, and how much of it: ramps along other axes than the source's.
void Begin(Scene& scene) {
    for (std::size_t i = 0; i < scene.dst.bytes; ++i)
        scene.dst.record.data[i] = static_cast<std::uint8_t>(i * 200 / scene.dst.bytes);
    const ImageBuffer mask = MaskOf(scene);
    for (int y = 0; y < mask.height; ++y)
        for (int x = 0; x < mask.width; ++x)
            mask.data[y * mask.stride + x] =
                static_cast<std::uint8_t>(255 * (x + y) / (mask.width + mask.height));
}

std::int32_t BlendOwnAlpha(Scene& scene) {
    return PxbAlphaBlend(&scene.dst.record, &scene.src.record, nullptr, nullptr, nullptr);
}

std::int32_t BlendWithMask(Scene& scene) {
    const ImageBuffer mask = MaskOf(scene);
    return PxbAlphaBlend(&scene.dst.record, &scene.src.record, &mask, nullptr, nullptr);
}

Row Blend(const char* name, int format, double target, std::int32_t (*run)(Scene&),
          std::vector<Contender> contenders) {
    Row row = {name, Job::kTask, format, format, {Reference::kPeer, target}, {}};
    row.task.run = run;
    row.task.begin = Begin;
    row.task.contenders = std::move(contenders);
    return row;
}

}  // namespace

ImageBuffer MaskOf(Scene& scene) {
    const ImageBuffer& all = scene.between.record;
    return {all.data, 8, all.width, all.width, all.height, PXB_RGB8, nullptr};
}

std::shared_ptr<Frame> Premultiplied(const Scene& scene) {
    auto copy = std::make_shared<Frame>(PXB_RGB32, scene.src.width(), scene.src.height(), 64);
    for (std::size_t i = 0; i < copy->bytes; ++i) {
        const int sample = scene.src.record.data[i], alpha = scene.src.record.data[i | 3];
        copy->record.data[i] =
            static_cast<std::uint8_t>(i % 4 == 3 ? alpha : (sample * alpha + 127) / 255);
    }
    return copy;
}

std::vector<Row> BlendRows() {
    return {
        Blend("blend RGB32, own alpha", PXB_RGB32, 1.3, BlendOwnAlpha,
              {PXB_LIBYUV(BlendOwnAlphaByLibyuv) PXB_PIXMAN(BlendOwnAlphaByPixman)}),
        Blend("blend RGB32", PXB_RGB32, 3.8, BlendWithMask,
              {PXB_LIBYUV(BlendBytesByLibyuv) PXB_PIXMAN(BlendWithMaskByPixman)}),
        Blend("blend RGB24", PXB_RGB24, 2, BlendWithMask,
              {PXB_LIBYUV(BlendBytesByLibyuv) PXB_PIXMAN(BlendWithMaskByPixman)}),
        Blend("blend YUY2", PXB_YUY2, 1.7, BlendWithMask, {PXB_LIBYUV(BlendBytesByLibyuv)}),
        Blend("blend I420", PXB_I420, 1.15, BlendWithMask, {PXB_LIBYUV(BlendI420ByLibyuv)}),
    };
}

}  // namespace pxb::bench
