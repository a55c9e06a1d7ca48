#include "transform/rotate_interleaved.h"

#include <cstring>

#include "transform/warp.h"

namespace pxb {
namespace {

template <class B>
Raster<B> RasterOf(B* data, std::int32_t width, std::int32_t height, std::int32_t stride,
                   std::int32_t bits_per_pixel) {
    return {data, width, height, stride, bits_per_pixel / 8};
}

template <int kBytes>
void CopyPixelsOf(Byte* dst, std::ptrdiff_t dst_step, const Byte* src, std::ptrdiff_t src_step,
                  std::int32_t count) {
    for (; count > 0; --count, dst += dst_step, src += src_step) std::memcpy(dst, src, kBytes);
}

// `count` pixels, `bytes` each.
void CopyPixels(Byte* dst, std::ptrdiff_t dst_step, const Byte* src, std::ptrdiff_t src_step,
                std::int32_t count, std::int32_t bytes) {
    if (bytes == 3) return CopyPixelsOf<3>(dst, dst_step, src, src_step, count);
    if (bytes == 4) return CopyPixelsOf<4>(dst, dst_step, src, src_step, count);
    for (; count > 0; --count, dst += dst_step, src += src_step)
        std::memcpy(dst, src, static_cast<std::size_t>(bytes));
}

void CopyEdges(const Raster<Byte>& dst, const SourceRowTable& src, std::int32_t angle_degrees) {
    const std::int32_t bytes = dst.bytes_per_pixel;
    const std::int32_t width = dst.width, height = dst.height;
    const auto copy_row = [&](std::ptrdiff_t from, std::ptrdiff_t step) {
        CopyPixels(dst.data, bytes, src.data + from, step, width, bytes);
    };
    const auto copy_column = [&](std::ptrdiff_t dst_step, std::ptrdiff_t from,
                                 std::ptrdiff_t step) {
        CopyPixels(dst.data, dst_step, src.data + from, step, height, bytes);
    };
    const std::ptrdiff_t last_across = std::ptrdiff_t{width - 1} * bytes;
    switch (angle_degrees) {
        case 90:  // the column is left out: callers depend on the bytes
            return copy_row(std::ptrdiff_t{height - 1} * bytes, src.stride);
        case 180: {
            const std::ptrdiff_t last = last_across + (height - 1) * src.stride;
            copy_row(last, -bytes);
            return copy_column(src.stride, last, -src.stride);  // not the destination's
        }
        case 270: {
            const std::ptrdiff_t last_down = (width - 1) * src.stride;
            copy_row(last_down, -src.stride);
            return copy_column(dst.stride, last_down, bytes);
        }
        default:
            return;
    }
}

}  // namespace

void RotateInterleaved(std::int32_t dst_bits_per_pixel, Byte* dst, std::int32_t dst_width,
                       std::int32_t dst_height, std::int32_t dst_stride, const Byte* src,
                       std::int32_t src_width, std::int32_t src_height, std::int32_t src_stride,
                       std::int32_t src_bits_per_pixel, std::int32_t angle_degrees) {
    const auto to = RasterOf(dst, dst_width, dst_height, dst_stride, dst_bits_per_pixel);
    const SourceRowTable from = {
        RasterOf(src, src_width, src_height, src_stride, src_bits_per_pixel)};
    if (!dst_width || !dst_height || !src_width || !src_height) return;
    kTurnByWarp.Choose()(to, from, angle_degrees);
    if (to.bytes_per_pixel > 0) CopyEdges(to, from, angle_degrees);
}

}  // namespace pxb
