// RGB to YUV, the same bytes as the plain kernels. All weights of chroma are even, so they are
// halved here and the shifts are one less.
#include "convert/drifting_rows.h"
#include "convert/rgb_to_yuv.h"
#include "core/simd/writer.h"

namespace pxb::PXB_TARGET {
namespace {

template <class V, class Rgb>
PXB_INLINE auto Luma(const Rgb& pixels) {
    return V::template WeighBgr<25, 129, 66, 16>(pixels);
}

// U V U V ... of the pairs of one row, or of the blocks of two.
template <class V, class... Row>
PXB_INLINE auto ChromaPairs(const Row&... rows) {
    return V::PairUp(V::template WeighPairs<56, -37, -19>(rows...),
                     V::template WeighPairs<-9, -47, 56>(rows...));
}

struct Planar {
    template <class V, class Pairs>
    static PXB_INLINE void Store(Byte* u, Byte* v, std::ptrdiff_t x, Pairs pairs) {
        V::StorePairs(u + x / 2, v + x / 2, pairs);
    }
};

struct Interleaved {
    template <class V, class Pairs>
    static PXB_INLINE void Store(Byte* uv, Byte*, std::ptrdiff_t x, Pairs pairs) {
        V::Store(uv + x, pairs);
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
                .ForPixels(width, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                    const auto top = V::template LoadRgb<kBytesPerPixel>(src0 + kBytesPerPixel * x);
                    const auto bottom =
                        V::template LoadRgb<kBytesPerPixel>(src1 + kBytesPerPixel * x);
                    V::Store(y0 + x, Luma<V>(top));
                    V::Store(y1 + x, Luma<V>(bottom));
                    Chroma::template Store<V>(pu, pv, x, ChromaPairs<V>(top, bottom));
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
            write.To(to).ForPixels(width, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                const auto pixels = V::template LoadRgb<kBytesPerPixel>(from + kBytesPerPixel * x);
                V::StoreYuy2(to + 2 * x, Luma<V>(pixels), ChromaPairs<V>(pixels));
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

// One pixel at a time in plain integers, which the compiler spreads over the registers of the
// build.
void ConvertRgb32ToAyuv32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height,
            [=](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                for (std::int32_t x = 0; x < width; ++x, to += 4, from += 4) {
                    const int b = from[0], g = from[1], r = from[2];
                    to[0] = from[3];
                    to[1] = static_cast<Byte>(((25 * b + 129 * g + 66 * r) >> 8) + 16);
                    to[2] = static_cast<Byte>(((56 * b - 37 * g - 19 * r) >> 7) + 128);
                    to[3] = static_cast<Byte>(((-9 * b - 47 * g + 56 * r) >> 7) + 128);
                }
            });
}

}  // namespace pxb::PXB_TARGET
