// Channels of packed images, the same bytes as the plain kernels.
#include "convert/channel.h"
#include "convert/simd/color.h"

namespace pxb::PXB_TARGET {
namespace {

template <int kByte>
PXB_INLINE void Take(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                     std::int32_t width, std::int32_t height) {
    ForPixelsOfRows(dst, dst_stride, src, src_stride, width, height,
                    []<class V>(Byte* to, const Byte* from, std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                        V::Store(to + x, V::template TakeByte<kByte>(V::LoadBgrx(from + 4 * x)));
                    });
}

template <int kBytesPerPixel, int kB, int kG, int kR, int kOffset>
PXB_INLINE void Weigh(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                      std::int32_t width, std::int32_t height) {
    ForPixelsOfRows(dst, dst_stride, src, src_stride, width, height,
                    []<class V>(Byte* to, const Byte* from, std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                        using C = ToYuv<V>;
                        const auto rgb =
                            C::template Load<kBytesPerPixel>(from + kBytesPerPixel * x);
                        C::Store(to + x, C::template Weigh<kB, kG, kR, kOffset>(rgb));
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
    Weigh<3, 28, 151, 77, 0>(dst, dst_stride, src, src_stride, width, height);
}

void TakeRgb24Luma(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                   std::int32_t width, std::int32_t height) {
    Weigh<3, 25, 129, 66, 16>(dst, dst_stride, src, src_stride, width, height);
}

void TakeRgb32Luma(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                   std::int32_t width, std::int32_t height) {
    Weigh<4, 25, 129, 66, 16>(dst, dst_stride, src, src_stride, width, height);
}

void TakeYuy2Luma(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                  std::int32_t width, std::int32_t height) {
    const Writer write(width, height);
    ForRows(dst, dst_stride, src, src_stride, height,
            [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                write.To(to).ForPairs(width, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                    const Byte* const pixels = from + 2 * x;
                    V::Store(to + x, V::Evens(V::Load(pixels), V::Load(pixels + V::kPixels)));
                });
            });
}

}  // namespace pxb::PXB_TARGET
