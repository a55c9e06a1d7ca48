// Copies and depth changes in plain code.
#include "convert/rgb_copies.h"

#include "core/copy.h"

namespace pxb {

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

void ConvertRgb8ToRgb24(Byte* dst, std::int32_t dst_step, const Byte* src, std::int32_t src_stride,
                        std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_step, src, src_stride, height, [=](Byte* to, const Byte* from) {
        for (std::int32_t x = 0; x < width; ++x, to += 3) to[0] = to[1] = to[2] = from[x];
    });
}

}  // namespace plain
}  // namespace pxb
