#include "transform/turns.h"

#include <algorithm>
#include <cstring>

namespace pxb::plain {
namespace {

template <int kBytes>
void Turn(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src, std::ptrdiff_t x_step,
          std::ptrdiff_t y_step, std::int32_t width, std::int32_t height) {
    for (; height > 0; --height, dst += dst_stride, src += y_step) {
        const Byte* from = src;
        for (std::int32_t x = 0; x < width; ++x, from += x_step)
            std::memcpy(dst + std::ptrdiff_t{x} * kBytes, from, kBytes);
    }
}

}  // namespace

void TurnQuarter(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src, std::ptrdiff_t x_step,
                 std::ptrdiff_t y_step, std::int32_t width, std::int32_t height,
                 std::int32_t bytes) {
    if (bytes == 1) return Turn<1>(dst, dst_stride, src, x_step, y_step, width, height);
    if (bytes == 3) return Turn<3>(dst, dst_stride, src, x_step, y_step, width, height);
    Turn<4>(dst, dst_stride, src, x_step, y_step, width, height);
}

void TurnHalf(Byte* dst, const Byte* src, std::ptrdiff_t count) {
    std::reverse_copy(src, src + count, dst);
}

}  // namespace pxb::plain
