// zimg as a scaler: planes whose rows lie at multiples of 32 bytes. Beside mode 6 stands its cubic
// B-spline, which it stretches over all pixels that a destination pixel covers.
#include <zimg.h>

#include <memory>
#include <vector>

#include "bench/scale_rows.h"

namespace pxb::bench {
namespace {

constexpr int kAlignment = 32;

zimg_image_format FormatOf(const Frame& frame) {
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.width = static_cast<unsigned>(frame.width());
    format.height = static_cast<unsigned>(frame.height());
    format.pixel_type = ZIMG_PIXEL_BYTE;
    format.pixel_range = ZIMG_RANGE_FULL;
    if (frame.record.format == PXB_I420) {
        format.color_family = ZIMG_COLOR_YUV;
        format.subsample_w = format.subsample_h = 1;
        format.chroma_location = ZIMG_CHROMA_CENTER;
    }
    return format;
}

zimg_graph_builder_params ParametersOf(Filter filter) {
    zimg_graph_builder_params parameters;
    zimg_graph_builder_params_default(&parameters, ZIMG_API_VERSION);
    parameters.resample_filter = filter == Filter::kNearest    ? ZIMG_RESIZE_POINT
                                 : filter == Filter::kBilinear ? ZIMG_RESIZE_BILINEAR
                                                               : ZIMG_RESIZE_BICUBIC;
    parameters.resample_filter_uv = parameters.resample_filter;
    parameters.filter_param_a = parameters.filter_param_a_uv = 1;  // B and C: a B-spline
    parameters.filter_param_b = parameters.filter_param_b_uv = 0;
    parameters.cpu_type = ZIMG_CPU_AUTO_64B;
    return parameters;
}

template <class Buffer>
Buffer BufferOf(const Frame& frame) {
    Buffer buffer = {};
    buffer.version = ZIMG_API_VERSION;
    for (int plane = 0; frame.data[plane]; ++plane) {
        buffer.plane[plane].data = frame.data[plane];
        buffer.plane[plane].stride = frame.stride[plane];
        buffer.plane[plane].mask = ZIMG_BUFFER_MAX;
    }
    return buffer;
}

bool IsAligned(const Frame& frame) {
    for (int plane = 0; frame.data[plane]; ++plane)
        if (frame.stride[plane] % kAlignment != 0 ||
            reinterpret_cast<std::uintptr_t>(frame.data[plane]) % kAlignment != 0)
            return false;
    return true;
}

}  // namespace

PeerWork ScaleWithZimg(Filter filter, Scene& scene) {
    const int format = scene.src.record.format;
    if (format != PXB_RGB8 && format != PXB_I420) return {};
    if (!IsAligned(scene.src) || !IsAligned(scene.dst)) return {};
    const zimg_image_format from = FormatOf(scene.src), to = FormatOf(scene.dst);
    const zimg_graph_builder_params parameters = ParametersOf(filter);
    const std::shared_ptr<zimg_filter_graph> graph(zimg_filter_graph_build(&from, &to, &parameters),
                                                   zimg_filter_graph_free);
    std::size_t bytes = 0;
    if (!graph || zimg_filter_graph_get_tmp_size(graph.get(), &bytes)) return {};
    const std::shared_ptr<void> memory(std::aligned_alloc(64, (bytes + 63) / 64 * 64), std::free);
    return {[graph, memory, src = BufferOf<zimg_image_buffer_const>(scene.src),
             dst = BufferOf<zimg_image_buffer>(scene.dst)] {
        zimg_filter_graph_process(graph.get(), &src, &dst, memory.get(), nullptr, nullptr, nullptr,
                                  nullptr);
    }};
}

}  // namespace pxb::bench
