// RGB to YUV, the same bytes as the plain kernels. All weights of chroma are even, so they are
// halved here and the shifts are one less.
#include "convert/drifting_rows.h"
#include "convert/rgb_to_yuv.h"
#include "core/simd/wide.h"

namespace pxb::PXB_TARGET {
namespace {

template <class V>
PXB_INLINE auto Luma(const typename V::Rgb& pixels) {
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
    static PXB_INLINE void Store(Byte* u, Byte* v, int x, Pairs pairs) {
        V::StorePairs(u + x / 2, v + x / 2, pairs);
    }
};

struct Interleaved {
    template <class V, class Pairs>
    static PXB_INLINE void Store(Byte* uv, Byte*, int x, Pairs pairs) {
        V::Store(uv + x, pairs);
    }
};

// The functions below convert the pixels from x on, as many as fit before `end`, and return where
// they stopped.
template <class V, int kBytesPerPixel, class Chroma>
PXB_INLINE int ConvertRowPair(Byte* y0, Byte* y1, Byte* u, Byte* v, const Byte* src0,
                              const Byte* src1, int x, int end) {
    for (; x + V::kPixels <= end; x += V::kPixels) {
        const auto top = V::template LoadRgb<kBytesPerPixel>(src0 + kBytesPerPixel * x);
        const auto bottom = V::template LoadRgb<kBytesPerPixel>(src1 + kBytesPerPixel * x);
        V::Store(y0 + x, Luma<V>(top));
        V::Store(y1 + x, Luma<V>(bottom));
        Chroma::template Store<V>(u, v, x, ChromaPairs<V>(top, bottom));
    }
    return x;
}

template <class V, int kBytesPerPixel>
PXB_INLINE int ConvertRow(Byte* dst, const Byte* src, int x, int end) {
    for (; x + V::kPixels <= end; x += V::kPixels) {
        const auto pixels = V::template LoadRgb<kBytesPerPixel>(src + kBytesPerPixel * x);
        V::StoreYuy2(dst + 2 * x, Luma<V>(pixels), ChromaPairs<V>(pixels));
    }
    return x;
}

template <int kBytesPerPixel, class Chroma>
PXB_INLINE void ConvertTo420(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                             std::int32_t chroma_stride, const Byte* src, std::int32_t src_stride,
                             std::int32_t width, std::int32_t height) {
    ForRowPairsOfPackedAnd420<kBytesPerPixel>(
        src, src_stride, y, u, v, y_stride, chroma_stride, width, height,
        [=](const Byte* src0, const Byte* src1, Byte* y0, Byte* y1, Byte* pu, Byte* pv)
            PXB_INLINE_LAMBDA {
                const int x = ConvertRowPair<Wide, kBytesPerPixel, Chroma>(y0, y1, pu, pv, src0,
                                                                           src1, 0, width);
                ConvertRowPair<Pair, kBytesPerPixel, Chroma>(y0, y1, pu, pv, src0, src1, x, width);
            });
    Wide::Leave();
}

template <int kBytesPerPixel>
PXB_INLINE void ConvertToYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src,
                              std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForDriftingRows<2, kBytesPerPixel>(dst, dst_stride, src, src_stride, width, height,
                                       [=](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                                           const int x =
                                               ConvertRow<Wide, kBytesPerPixel>(to, from, 0, width);
                                           ConvertRow<Pair, kBytesPerPixel>(to, from, x, width);
                                       });
    Wide::Leave();
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

}  // namespace pxb::PXB_TARGET
