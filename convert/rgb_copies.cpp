// Copies and depth changes in plain code.
#include "convert/rgb_copies.h"

namespace pxb {
namespace {

void CopyBytes(Byte* dst, const Byte* src, std::size_t bytes) {
    __asm__ volatile("rep movsb" : "+D"(dst), "+S"(src), "+c"(bytes) : : "memory");
}

void CopyRows(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
              std::ptrdiff_t row_bytes, std::int32_t height) {
    const bool tight = dst_stride == row_bytes && src_stride == row_bytes && height > 0;
    if (tight) return CopyBytes(dst, src, static_cast<std::size_t>(row_bytes) * height);
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        CopyBytes(to, from, static_cast<std::size_t>(row_bytes));
    });
}

}  // namespace

void CopyRgb24(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
               std::int32_t width, std::int32_t height) {
    CopyRows(dst, dst_stride, src, src_stride, std::ptrdiff_t{3} * width, height);
}

void CopyRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
               std::int32_t width, std::int32_t height) {
    CopyRows(dst, dst_stride, src, src_stride, std::ptrdiff_t{4} * width, height);
}

namespace plain {

void ConvertRgb24ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                         std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        for (std::int32_t x = 0; x < width; ++x, to += 4, from += 3) {
            to[0] = from[0];
            to[1] = from[1];
            to[2] = from[2];
            to[3] = 0;
        }
    });
}

void ConvertRgb32ToRgb24(Byte* dst, std::int32_t dst_stride, const Byte* src,
                         std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        for (std::int32_t x = 0; x < width; ++x, to += 3, from += 4) {
            to[0] = from[0];
            to[1] = from[1];
            to[2] = from[2];
        }
    });
}

}  // namespace plain
}  // namespace pxb
