// RGB to YUV, the same bytes as the plain kernels. All weights of chroma are even: where
// pixels share it, they are halved here and the shifts are one less.
#include "convert/drifting_rows.h"
#include "convert/rgb_to_yuv.h"
#include "convert/simd/color.h"

namespace pxb::PXB_TARGET {
namespace {

template <class C, class Rgb>
PXB_INLINE auto Luma(const Rgb& pixels) {
    return C::template Weigh<25, 129, 66, 16>(pixels);
}

// U V U V ... of the pairs of one row, or of the blocks of two.
template <class C, class... Row>
PXB_INLINE auto ChromaPairs(const Row&... rows) {
    return C::PairUp(C::template WeighPairs<56, -37, -19>(rows...),
                     C::template WeighPairs<-9, -47, 56>(rows...));
}

struct Planar {
    template <class C, class Pairs>
    static PXB_INLINE void Store(Byte* u, Byte* v, std::ptrdiff_t x, Pairs pairs) {
        C::StorePairs(u + x / 2, v + x / 2, pairs);
    }
};

struct Interleaved {
    template <class C, class Pairs>
    static PXB_INLINE void Store(Byte* uv, Byte*, std::ptrdiff_t x, Pairs pairs) {
        C::Store(uv + x, pairs);
    }
};

template <int kBytesPerPixel, class Chroma>
PXB_INLINE void ConvertTo420(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                             std::int32_t chroma_stride, const Byte* src, std::int32_t src_stride,
                             std::int32_t width, std::int32_t height) {
    const Writer write(width, height);
    ForRowPairsOfPackedAnd420<kBytesPerPixel>(
        src, src_stride, y, u, v, y_stride, chroma_stride, width, height,
        [&](const Byte* src0, const Byte* src1, Byte* y0, Byte* y1, Byte* pu,
            Byte* pv) PXB_INLINE_LAMBDA {
            write.To(y0, y1, pu, pv)
                .ForPairs(width, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                    using C = ToYuv<V>;
                    const auto top = C::template Load<kBytesPerPixel>(src0 + kBytesPerPixel * x);
                    const auto bottom = C::template Load<kBytesPerPixel>(src1 + kBytesPerPixel * x);
                    C::Store(y0 + x, Luma<C>(top));
                    C::Store(y1 + x, Luma<C>(bottom));
                    Chroma::template Store<C>(pu, pv, x, ChromaPairs<C>(top, bottom));
                });
        });
}

template <int kBytesPerPixel>
PXB_INLINE void ConvertToYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src,
                              std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    const Writer write(width, height);
    ForDriftingRows<2, kBytesPerPixel>(
        dst, dst_stride, src, src_stride, width, height,
        [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
            write.To(to).ForPairs(width, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                using C = ToYuv<V>;
                const auto pixels = C::template Load<kBytesPerPixel>(from + kBytesPerPixel * x);
                C::StoreYuy2(to + 2 * x, Luma<C>(pixels), ChromaPairs<C>(pixels));
            });
        });
}

}  // namespace

void ConvertRgb24ToYuv420(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                          std::int32_t chroma_stride, const Byte* src, std::int32_t src_stride,
                          std::int32_t width, std::int32_t height) {
    ConvertTo420<3, Planar>(y, u, v, y_stride, chroma_stride, src, src_stride, width, height);
}

void ConvertRgb32ToYuv420(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                          std::int32_t chroma_stride, const Byte* src, std::int32_t src_stride,
                          std::int32_t width, std::int32_t height) {
    ConvertTo420<4, Planar>(y, u, v, y_stride, chroma_stride, src, src_stride, width, height);
}

void ConvertRgb32ToNv12(Byte* y, Byte* uv, std::int32_t y_stride, std::int32_t uv_stride,
                        const Byte* src, std::int32_t src_stride, std::int32_t width,
                        std::int32_t height) {
    ConvertTo420<4, Interleaved>(y, uv, uv, y_stride, uv_stride, src, src_stride, width, height);
}

void ConvertRgb24ToYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src,
                        std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ConvertToYuy2<3>(dst, dst_stride, src, src_stride, width, height);
}

void ConvertRgb32ToYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src,
                        std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ConvertToYuy2<4>(dst, dst_stride, src, src_stride, width, height);
}

// Callers may convert in place.
void ConvertRgb32ToAyuv32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    const Writer write(0, 0);
    ForRows(dst, dst_stride, src, src_stride, height,
            [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                const auto convert = [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                    using C = ToYuv<V>;
                    const auto pixels = V::LoadBgrx(from + 4 * x);
                    C::template StoreAyuv<16>(to + 4 * x, pixels,
                                              C::template WeighEach<25, 129, 66>(pixels),
                                              C::template WeighEach<112, -74, -38>(pixels),
                                              C::template WeighEach<-18, -94, 112>(pixels));
                };
                write.To(to).ForPixelsInPlace(width, convert);
            });
}

}  // namespace pxb::PXB_TARGET
