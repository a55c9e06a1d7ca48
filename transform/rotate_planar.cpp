#include "transform/rotate_planar.h"

#include "core/planes.h"
#include "transform/turns.h"

namespace pxb {
namespace {

void TurnPlane(Byte* dst, const Byte* src, std::int32_t angle_degrees, std::int32_t width,
               std::int32_t height) {
    if (width == 0 || height == 0) return;
    const std::ptrdiff_t row = width;
    const auto turn = [&](const Byte* from, std::ptrdiff_t x_step, std::ptrdiff_t y_step) {
        kTurnQuarter.Choose()(dst, height, from, x_step, y_step, height, width, 1);
    };
    switch (angle_degrees) {
        case 90:
            return turn(src + row * (height - 1), -row, 1);
        case 180:
            return kTurnHalf.Choose()(dst, src, row * height);
        case 270:
            return turn(src + width - 1, row, -1);
        default:
            return;
    }
}

}  // namespace

void RotatePlanar420(Byte* dst, const Byte* src, std::int32_t dst_height, std::int32_t dst_stride,
                     std::int32_t src_stride, std::int32_t angle_degrees, std::int32_t width,
                     std::int32_t height) {
    const std::int64_t dst_bytes = std::int64_t{dst_stride} * dst_height;
    const std::int64_t src_bytes = std::int64_t{src_stride} * height;
    TurnPlane(dst, src, angle_degrees, width, height);
    dst += dst_bytes, src += src_bytes;
    for (int plane = 0; plane < 2; ++plane, dst += dst_bytes / 4, src += src_bytes / 4)
        TurnPlane(dst, src, angle_degrees, width / 2, height / 2);
}

}  // namespace pxb
