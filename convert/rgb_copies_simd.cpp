// Depth changes, the same bytes as the plain kernels.
#include "convert/rgb_copies.h"
#include "core/simd/writer.h"

namespace pxb::PXB_TARGET {
namespace {

PXB_INLINE void CopyBgr(Byte* dst, const Byte* src) {
    dst[0] = src[0];
    dst[1] = src[1];
    dst[2] = src[2];
}

}  // namespace

void ConvertRgb24ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                         std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    const Writer write(width, height);
    ForRows(dst, dst_stride, src, src_stride, height,
            [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                const auto x = write.To(to).ForPixels(
                    width, [=]<class V>(std::ptrdiff_t at) PXB_INLINE_LAMBDA {
                        V::StoreBgrx(to + 4 * at, V::LoadBgr(from + 3 * at));
                    });
                if (x == width) return;
                CopyBgr(to + 4 * x, from + 3 * x);
                to[4 * x + 3] = 0;
            });
}

void ConvertRgb32ToRgb24(Byte* dst, std::int32_t dst_stride, const Byte* src,
                         std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    const Writer write(width, height);
    ForRows(dst, dst_stride, src, src_stride, height,
            [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                const auto x = write.To(to).ForPixels(
                    width, [=]<class V>(std::ptrdiff_t at) PXB_INLINE_LAMBDA {
                        V::StoreBgr(to + 3 * at, V::LoadBgrx(from + 4 * at));
                    });
                if (x < width) CopyBgr(to + 3 * x, from + 4 * x);
            });
}

void ConvertRgb8ToRgb24(Byte* dst, std::int32_t dst_step, const Byte* src, std::int32_t src_stride,
                        std::int32_t width, std::int32_t height) {
    const Writer write(width, height);
    ForRows(
        dst, dst_step, src, src_stride, height, [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
            const auto x =
                write.To(to).ForPixels(width, [=]<class V>(std::ptrdiff_t at) PXB_INLINE_LAMBDA {
                    const auto grey = V::Load(from + at);
                    V::StoreBgr(to + 3 * at, grey, grey, grey);
                });
            if (x < width) to[3 * x] = to[3 * x + 1] = to[3 * x + 2] = from[x];
        });
}

}  // namespace pxb::PXB_TARGET
