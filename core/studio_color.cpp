#include "core/studio_color.h"

#include "core/float_guard.h"

namespace pxb {
namespace {

std::uint8_t ClampToByte(double value) {
    if (value >= 255.0) return 255;
    if (value <= 0.0) return 0;
    return static_cast<std::uint8_t>(static_cast<std::int32_t>(value));
}

// The order of operations decides the last bit, and so, near whole numbers, the byte.
PXB_NOINLINE void Compute(Rgb color, Yuv* yuv) {
    const double r = color.r, g = color.g, b = color.b;
    yuv->y = ClampToByte(((0.504 * g + 0.257 * r) + 0.098 * b) + 16.0);
    yuv->u = ClampToByte((0.439 * b - (0.291 * g + 0.148 * r)) + 128.0);
    yuv->v = ClampToByte(((0.439 * r - 0.368 * g) - 0.071 * b) + 128.0);
}

}  // namespace

Yuv StudioYuv(Rgb color) {
    Yuv yuv;
    const FloatGuard guard;
    Compute(color, &yuv);
    return yuv;
}

}  // namespace pxb
