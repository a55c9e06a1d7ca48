// Channels of packed RGB, the same bytes as the plain kernel.
#include "convert/channel.h"
#include "core/simd/wide.h"

namespace pxb::PXB_TARGET {
namespace {

template <int kByte, class V>
PXB_INLINE std::int32_t TakeBytes(Byte* dst, const Byte* src, std::int32_t x, std::int32_t end) {
    for (; x + V::kPixels <= end; x += V::kPixels)
        V::Store(dst + x, V::template NarrowByte<kByte>(V::LoadBgrx(src + 4 * x)));
    return x;
}

template <int kByte>
PXB_INLINE void Take(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                     std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height,
            [=](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                std::int32_t x = TakeBytes<kByte, Wide>(to, from, 0, width);
                x = TakeBytes<kByte, Pair>(to, from, x, width);
                if (x < width) to[x] = from[4 * x + kByte];
            });
    Wide::Leave();
}

template <class V>
PXB_INLINE std::int32_t TakeGrey(Byte* dst, const Byte* src, std::int32_t x, std::int32_t end) {
    for (; x + V::kPixels <= end; x += V::kPixels)
        V::Store(dst + x,
                 V::template WeighBgr<28, 151, 77, 0>(V::template LoadRgb<3>(src + 3 * x)));
    return x;
}

}  // namespace

void TakeRgb32Channel(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                      std::int32_t width, std::int32_t height, std::int32_t byte) {
    switch (byte) {
        case 0:
            return Take<0>(dst, dst_stride, src, src_stride, width, height);
        case 1:
            return Take<1>(dst, dst_stride, src, src_stride, width, height);
        case 2:
            return Take<2>(dst, dst_stride, src, src_stride, width, height);
        default:
            return Take<3>(dst, dst_stride, src, src_stride, width, height);
    }
}

void TakeRgb24Grey(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                   std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height,
            [=](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                std::int32_t x = TakeGrey<Wide>(to, from, 0, width);
                x = TakeGrey<Pair>(to, from, x, width);
                const Byte* const last = from + 3 * x;
                if (x < width)
                    to[x] = static_cast<Byte>((28 * last[0] + 151 * last[1] + 77 * last[2]) >> 8);
            });
    Wide::Leave();
}

}  // namespace pxb::PXB_TARGET
