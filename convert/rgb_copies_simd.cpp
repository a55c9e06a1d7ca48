// Depth changes, the same bytes as the plain kernels.
#include "convert/rgb_copies.h"
#include "core/simd/wide.h"

namespace pxb::PXB_TARGET {
namespace {

template <class V>
PXB_INLINE std::int32_t WidenPixels(Byte* dst, const Byte* src, std::int32_t x, std::int32_t end) {
    for (; x + V::kPixels <= end; x += V::kPixels)
        V::StoreBgrx(dst + 4 * x, V::LoadBgr(src + 3 * x));
    return x;
}

template <class V>
PXB_INLINE std::int32_t NarrowPixels(Byte* dst, const Byte* src, std::int32_t x, std::int32_t end) {
    for (; x + V::kPixels <= end; x += V::kPixels)
        V::StoreBgr(dst + 3 * x, V::LoadBgrx(src + 4 * x));
    return x;
}

template <class V>
PXB_INLINE std::int32_t SpreadGrey(Byte* dst, const Byte* src, std::int32_t x, std::int32_t end) {
    for (; x + V::kPixels <= end; x += V::kPixels) {
        const auto grey = V::Load(src + x);
        V::StoreBgr(dst + 3 * x, grey, grey, grey);
    }
    return x;
}

PXB_INLINE void CopyBgr(Byte* dst, const Byte* src) {
    dst[0] = src[0];
    dst[1] = src[1];
    dst[2] = src[2];
}

}  // namespace

void ConvertRgb24ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                         std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height,
            [=](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                std::int32_t x = WidenPixels<Wide>(to, from, 0, width);
                x = WidenPixels<Pair>(to, from, x, width);
                if (x == width) return;
                CopyBgr(to + 4 * x, from + 3 * x);
                to[4 * x + 3] = 0;
            });
    Wide::Leave();
}

void ConvertRgb32ToRgb24(Byte* dst, std::int32_t dst_stride, const Byte* src,
                         std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height,
            [=](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                std::int32_t x = NarrowPixels<Wide>(to, from, 0, width);
                x = NarrowPixels<Pair>(to, from, x, width);
                if (x < width) CopyBgr(to + 3 * x, from + 4 * x);
            });
    Wide::Leave();
}

void ConvertRgb8ToRgb24(Byte* dst, std::int32_t dst_step, const Byte* src, std::int32_t src_stride,
                        std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_step, src, src_stride, height,
            [=](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                std::int32_t x = SpreadGrey<Wide>(to, from, 0, width);
                x = SpreadGrey<Pair>(to, from, x, width);
                if (x < width) to[3 * x] = to[3 * x + 1] = to[3 * x + 2] = from[x];
            });
    Wide::Leave();
}

}  // namespace pxb::PXB_TARGET
