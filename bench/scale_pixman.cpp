// pixman as a scaler: the source under a transformation, composed onto the destination. It has no
// picture of one grey channel, but one of alpha alone.
#include <pixman.h>

#include <memory>
#include <vector>

#include "bench/scale_rows.h"

namespace pxb::bench {
namespace {

using Picture = std::shared_ptr<pixman_image_t>;

pixman_format_code_t FormatOf(int format) {
    switch (format) {
        case PXB_RGB24:
            return PIXMAN_r8g8b8;
        case PXB_RGB32:
            return PIXMAN_x8r8g8b8;
        default:
            return PIXMAN_a8;
    }
}

std::vector<Picture> PicturesOf(const Frame& frame) {
    std::vector<Picture> pictures;
    for (int plane = 0; frame.data[plane]; ++plane)
        pictures.emplace_back(
            pixman_image_create_bits(FormatOf(frame.record.format), frame.width() / (plane ? 2 : 1),
                                     frame.height() / (plane ? 2 : 1),
                                     reinterpret_cast<std::uint32_t*>(frame.data[plane]),
                                     frame.stride[plane]),
            pixman_image_unref);
    return pictures;
}

bool SetFilter(pixman_image_t* picture, Filter filter, double step_x, double step_y) {
    if (filter != Filter::kShrinking) {
        const bool nearest = filter == Filter::kNearest;
        return pixman_image_set_filter(
            picture, nearest ? PIXMAN_FILTER_NEAREST : PIXMAN_FILTER_BILINEAR, nullptr, 0);
    }
    int count = 0;
    constexpr int kPhaseBits = 4;
    const std::unique_ptr<pixman_fixed_t, decltype(&std::free)> values(
        pixman_filter_create_separable_convolution(
            &count, pixman_double_to_fixed(step_x), pixman_double_to_fixed(step_y),
            PIXMAN_KERNEL_IMPULSE, PIXMAN_KERNEL_IMPULSE, PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX,
            kPhaseBits, kPhaseBits),
        std::free);
    return values && pixman_image_set_filter(picture, PIXMAN_FILTER_SEPARABLE_CONVOLUTION,
                                             values.get(), count);
}

}  // namespace

PeerWork ScaleWithPixman(Filter filter, Scene& scene) {
    // Rows are whole words.
    for (const Frame* frame : {&scene.src, &scene.dst})
        for (int plane = 0; frame->data[plane]; ++plane)
            if (frame->stride[plane] % 4 != 0) return {};
    if (scene.src.record.format == PXB_YUY2) return {};

    const std::vector<Picture> src = PicturesOf(scene.src), dst = PicturesOf(scene.dst);
    const double step_x = double(scene.src.width()) / scene.dst.width();
    const double step_y = double(scene.src.height()) / scene.dst.height();
    pixman_transform_t transform;
    pixman_transform_init_scale(&transform, pixman_double_to_fixed(step_x),
                                pixman_double_to_fixed(step_y));
    for (const Picture& picture : src) {
        pixman_image_set_transform(picture.get(), &transform);
        pixman_image_set_repeat(picture.get(), PIXMAN_REPEAT_PAD);
        if (!SetFilter(picture.get(), filter, step_x, step_y)) return {};
    }
    const auto run = [src, dst] {
        for (std::size_t i = 0; i < src.size(); ++i)
            pixman_image_composite32(PIXMAN_OP_SRC, src[i].get(), nullptr, dst[i].get(), 0, 0, 0, 0,
                                     0, 0, pixman_image_get_width(dst[i].get()),
                                     pixman_image_get_height(dst[i].get()));
    };
    return {run, static_cast<int>(src.size())};
}

}  // namespace pxb::bench
