// YUV reshuffles in plain code, and the copies.
#include "convert/yuv_reshuffles.h"

#include "convert/drifting_rows.h"
#include "core/copy.h"
#include "core/planes.h"

namespace pxb {
namespace {

void CopyYuv420(const Planes420& dst, const Byte* y, const Byte* u, const Byte* v,
                std::int32_t y_stride, std::int32_t chroma_stride, std::int32_t width,
                std::int32_t height) {
    CopyRows(dst.y, dst.stride, y, y_stride, width, height);
    CopyRows(dst.u, dst.chroma_stride, u, chroma_stride, width / 2, height / 2);
    CopyRows(dst.v, dst.chroma_stride, v, chroma_stride, width / 2, height / 2);
}

void MergeRow(Byte* dst, const Byte* y, const Byte* u, const Byte* v, std::ptrdiff_t pairs) {
    for (std::ptrdiff_t j = 0; j < pairs; ++j) {
        dst[4 * j] = y[2 * j];
        dst[4 * j + 1] = u[j];
        dst[4 * j + 2] = y[2 * j + 1];
        dst[4 * j + 3] = v[j];
    }
}

Byte Average(Byte a, Byte b) {
    return static_cast<Byte>((a + b + 1) / 2);
}

}  // namespace

void CopyYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
              std::int32_t width, std::int32_t height) {
    CopyRows(dst, dst_stride, src, src_stride, std::ptrdiff_t{2} * width, height);
}

void CopyYuv420ToYv12(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                      const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                      std::int32_t width, std::int32_t height) {
    const std::int64_t luma_bytes = std::int64_t{dst_stride} * height;
    CopyYuv420(PlanesOf420(dst, dst_stride, luma_bytes, true), y, u, v, y_stride, chroma_stride,
               width, height);
}

void CopyYuv420ToI420(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                      const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                      std::int32_t width, std::int32_t height) {
    const std::int64_t luma_bytes = std::int64_t{dst_stride} * height;
    CopyYuv420(PlanesOf420(dst, dst_stride, luma_bytes, false), y, u, v, y_stride, chroma_stride,
               width, height);
}

namespace plain {

void ConvertYuv420ToYuy2(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                         const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                         std::int32_t width, std::int32_t height) {
    ForRowPairsOfPackedAnd420<2>(
        dst, dst_stride, y, u, v, y_stride, chroma_stride, EvenWidth(width), height,
        [=](Byte* d0, Byte* d1, const Byte* y0, const Byte* y1, const Byte* pu, const Byte* pv) {
            MergeRow(d0, y0, pu, pv, width / 2);
            MergeRow(d1, y1, pu, pv, width / 2);
        });
}

void ConvertYuy2ToYuv420(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                         std::int32_t chroma_stride, const Byte* src, std::int32_t src_stride,
                         std::int32_t width, std::int32_t height) {
    ForRowPairsOfPackedAnd420<2>(
        src, src_stride, y, u, v, y_stride, chroma_stride, EvenWidth(width), height,
        [=](const Byte* s0, const Byte* s1, Byte* y0, Byte* y1, Byte* pu, Byte* pv) {
            for (int j = 0; j < width / 2; ++j, s0 += 4, s1 += 4) {
                y0[2 * j] = s0[0];
                y0[2 * j + 1] = s0[2];
                y1[2 * j] = s1[0];
                y1[2 * j + 1] = s1[2];
                pu[j] = Average(s0[1], s1[1]);
                pv[j] = Average(s0[3], s1[3]);
            }
        });
}

void ConvertYuy2ToYuv422(Byte* y, Byte* u, Byte* v, const Byte* yuy2, std::int32_t height,
                         std::int32_t half_width) {
    const std::ptrdiff_t pairs = std::ptrdiff_t{height} * half_width;
    for (std::ptrdiff_t j = 0; j < pairs; ++j) {
        y[2 * j] = yuy2[4 * j];
        u[j] = yuy2[4 * j + 1];
        y[2 * j + 1] = yuy2[4 * j + 2];
        v[j] = yuy2[4 * j + 3];
    }
}

void ConvertYuv422ToYuy2(const Byte* y, const Byte* u, const Byte* v, Byte* yuy2,
                         std::int32_t height, std::int32_t half_width) {
    MergeRow(yuy2, y, u, v, std::ptrdiff_t{height} * half_width);
}

}  // namespace plain
}  // namespace pxb
