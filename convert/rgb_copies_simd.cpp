// Depth changes, the same bytes as the plain kernels.
#include "convert/rgb_copies.h"
#include "core/simd/writer.h"

namespace pxb::PXB_TARGET {

void ConvertRgb24ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                         std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForPixelsOfRows(dst, dst_stride, src, src_stride, width, height,
                    []<class V>(Byte* to, const Byte* from, std::ptrdiff_t x)
                        PXB_INLINE_LAMBDA { V::StoreBgrx(to + 4 * x, V::LoadBgr(from + 3 * x)); });
}

void ConvertRgb32ToRgb24(Byte* dst, std::int32_t dst_stride, const Byte* src,
                         std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForPixelsOfRows(dst, dst_stride, src, src_stride, width, height,
                    []<class V>(Byte* to, const Byte* from, std::ptrdiff_t x)
                        PXB_INLINE_LAMBDA { V::StoreBgr(to + 3 * x, V::LoadBgrx(from + 4 * x)); });
}

void ConvertRgb8ToRgb24(Byte* dst, std::int32_t dst_step, const Byte* src, std::int32_t src_stride,
                        std::int32_t width, std::int32_t height) {
    ForPixelsOfRows(dst, dst_step, src, src_stride, width, height,
                    []<class V>(Byte* to, const Byte* from, std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                        const auto grey = V::Load(from + x);
                        V::StoreBgr(to + 3 * x, grey, grey, grey);
                    });
}

}  // namespace pxb::PXB_TARGET
