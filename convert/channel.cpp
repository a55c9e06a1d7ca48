// Channels of packed RGB in plain code.
#include "convert/channel.h"

namespace pxb {

void plain::TakeRgb32Channel(Byte* dst, std::int32_t dst_stride, const Byte* src,
                             std::int32_t src_stride, std::int32_t width, std::int32_t height,
                             std::int32_t byte) {
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        for (std::int32_t x = 0; x < width; ++x) to[x] = from[4 * x + byte];
    });
}

void plain::TakeRgb24Grey(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        for (std::int32_t x = 0; x < width; ++x, from += 3)
            to[x] = static_cast<Byte>((151 * from[1] + 77 * from[2] + 28 * from[0]) >> 8);
    });
}

}  // namespace pxb
