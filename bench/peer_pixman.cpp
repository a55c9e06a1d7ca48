// pixman. Its x8r8g8b8 is B G R X in memory, our RGB32, and its r8g8b8 our RGB24.
#include <pixman.h>

#include "bench/blend_rows.h"

namespace pxb::bench {
namespace {

using Image = std::shared_ptr<pixman_image_t>;

Image Wrap(pixman_format_code_t format, const ImageBuffer& image) {
    void* const bits = image.data;
    return {pixman_image_create_bits(format, image.width, image.height,
                                     static_cast<std::uint32_t*>(bits), image.stride),
            pixman_image_unref};
}

PeerWork Over(Image src, Image mask, Image dst) {
    return {[src = std::move(src), mask = std::move(mask), dst = std::move(dst)] {
        pixman_image_composite32(PIXMAN_OP_OVER, src.get(), mask.get(), dst.get(), 0, 0, 0, 0, 0, 0,
                                 pixman_image_get_width(dst.get()),
                                 pixman_image_get_height(dst.get()));
    }};
}

}  // namespace

PeerWork BlendOwnAlphaByPixman(Scene& scene) {
    const std::shared_ptr<Frame> src = Premultiplied(scene);
    PeerWork over =
        Over(Wrap(PIXMAN_a8r8g8b8, src->record), nullptr, Wrap(PIXMAN_x8r8g8b8, scene.dst.record));
    return {[src, run = std::move(over.run)] { run(); }};
}

PeerWork BlendWithMaskByPixman(Scene& scene) {
    if (scene.dst.record.width % 4 != 0) return {};  // it wants rows of whole words
    const bool is_rgb24 = scene.dst.record.format == PXB_RGB24;
    const pixman_format_code_t format = is_rgb24 ? PIXMAN_r8g8b8 : PIXMAN_x8r8g8b8;
    return Over(Wrap(format, scene.src.record), Wrap(PIXMAN_a8, MaskOf(scene)),
                Wrap(format, scene.dst.record));
}

}  // namespace pxb::bench
