// Channels of packed RGB, the same bytes as the plain kernel.
#include "convert/channel.h"
#include "core/simd/writer.h"

namespace pxb::PXB_TARGET {
namespace {

template <int kByte>
PXB_INLINE void Take(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                     std::int32_t width, std::int32_t height) {
    const Writer write(width, height);
    ForRows(
        dst, dst_stride, src, src_stride, height,
        [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
            const auto x =
                write.To(to).ForPixels(width, [=]<class V>(std::ptrdiff_t at) PXB_INLINE_LAMBDA {
                    V::Store(to + at, V::template NarrowByte<kByte>(V::LoadBgrx(from + 4 * at)));
                });
            if (x < width) to[x] = from[4 * x + kByte];
        });
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
    const Writer write(width, height);
    ForRows(dst, dst_stride, src, src_stride, height,
            [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                const auto x = write.To(to).ForPixels(
                    width, [=]<class V>(std::ptrdiff_t at) PXB_INLINE_LAMBDA {
                        const auto pixels = V::template LoadRgb<3>(from + 3 * at);
                        V::Store(to + at, V::template WeighBgr<28, 151, 77, 0>(pixels));
                    });
                const Byte* const last = from + 3 * x;
                if (x < width)
                    to[x] = static_cast<Byte>((28 * last[0] + 151 * last[1] + 77 * last[2]) >> 8);
            });
}

}  // namespace pxb::PXB_TARGET
