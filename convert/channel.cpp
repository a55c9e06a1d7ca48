// Channels of packed images in plain code.
#include "convert/channel.h"

namespace pxb {
namespace {

template <int kBytesPerPixel, int kB, int kG, int kR, int kOffset>
void Weigh(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
           std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        for (std::int32_t x = 0; x < width; ++x, from += kBytesPerPixel)
            to[x] =
                static_cast<Byte>(((kB * from[0] + kG * from[1] + kR * from[2]) >> 8) + kOffset);
    });
}

}  // namespace

void plain::TakeRgb32Channel(Byte* dst, std::int32_t dst_stride, const Byte* src,
                             std::int32_t src_stride, std::int32_t width, std::int32_t height,
                             std::int32_t byte) {
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        for (std::int32_t x = 0; x < width; ++x) to[x] = from[4 * x + byte];
    });
}

void plain::TakeRgb24Grey(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    Weigh<3, 28, 151, 77, 0>(dst, dst_stride, src, src_stride, width, height);
}

void plain::TakeRgb24Luma(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    Weigh<3, 25, 129, 66, 16>(dst, dst_stride, src, src_stride, width, height);
}

void plain::TakeRgb32Luma(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    Weigh<4, 25, 129, 66, 16>(dst, dst_stride, src, src_stride, width, height);
}

void plain::TakeYuy2Luma(Byte* dst, std::int32_t dst_stride, const Byte* src,
                         std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        for (std::int32_t x = 0; x < width; ++x) to[x] = from[2 * x];
    });
}

}  // namespace pxb
