// YUV to RGB kernels, ITU-R BT.601 studio range, and their variants.
//
// Each converts whole pairs of columns (4:2:0: and of rows). A negative height turns the image
// upside down: the RGB one for planar sources, the YUY2 one otherwise. Strides are bytes.
#pragma once
#include "convert/processor.h"
#include "core/rows.h"

namespace pxb {

using Yuv420ToRgbKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                               const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                               std::int32_t width, std::int32_t height);

using Yuy2ToRgbKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* src,
                             std::int32_t src_stride, std::int32_t width, std::int32_t height);

// Chroma comes as pairs U V.
using Nv12ToRgbKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* uv,
                             std::int32_t y_stride, std::int32_t uv_stride, std::int32_t width,
                             std::int32_t height);

// After the width / 2 samples of a row each chroma pointer advances by chroma_advance - width.
using Yuv422ToRgbKernel = void(std::int32_t width, Byte* dst, std::int32_t dst_stride,
                               const Byte* y, std::int32_t y_stride, const Byte* u, const Byte* v,
                               std::int32_t chroma_advance, std::int32_t height);

namespace plain {
Yuv420ToRgbKernel ConvertYuv420ToRgb24, ConvertYuv420ToRgb32;
Yuy2ToRgbKernel ConvertYuy2ToRgb32;
Yuv422ToRgbKernel ConvertYuv422ToRgb24;
Nv12ToRgbKernel ConvertNv12ToRgb32;
Yuy2ToRgbKernel ConvertAyuv32ToRgb32;
}  // namespace plain

#define PXB_DECLARE_YUV_TO_RGB(target)                            \
    namespace target {                                            \
    Yuv420ToRgbKernel ConvertYuv420ToRgb24, ConvertYuv420ToRgb32; \
    Yuy2ToRgbKernel ConvertYuy2ToRgb32, ConvertYuy2RunToRgb24;    \
    Yuv422ToRgbKernel ConvertYuv422ToRgb24;                       \
    Nv12ToRgbKernel ConvertNv12ToRgb32;                           \
    Yuy2ToRgbKernel ConvertAyuv32ToRgb32;                         \
    }
PXB_DECLARE_YUV_TO_RGB(pairwise)
PXB_DECLARE_YUV_TO_RGB(mmx)
PXB_DECLARE_YUV_TO_RGB(sse2)
PXB_DECLARE_YUV_TO_RGB(avx2)
PXB_DECLARE_YUV_TO_RGB(avx512)
#undef PXB_DECLARE_YUV_TO_RGB

// A single kernel for all processors: in each row the first 16 * (width / 16) pixels take the SIMD
// arithmetic and the rest the plain one. Callers depend on both.
Yuy2ToRgbKernel ConvertYuy2ToRgb24;

constexpr Variants<Yuv420ToRgbKernel> kYuv420ToRgb24 = PXB_VARIANTS_FROM_MMX(ConvertYuv420ToRgb24);
constexpr Variants<Yuv420ToRgbKernel> kYuv420ToRgb32 = PXB_VARIANTS_FROM_MMX(ConvertYuv420ToRgb32);
constexpr Variants<Yuy2ToRgbKernel> kYuy2ToRgb24 = {ConvertYuy2ToRgb24};
constexpr Variants<Yuy2ToRgbKernel> kYuy2ToRgb32 = PXB_VARIANTS_FROM_MMX(ConvertYuy2ToRgb32);
constexpr Variants<Yuv422ToRgbKernel> kYuv422ToRgb24 = PXB_VARIANTS_FROM_SSE2(ConvertYuv422ToRgb24);
constexpr Variants<Nv12ToRgbKernel> kNv12ToRgb32 = PXB_VARIANTS_FROM_SSE2(ConvertNv12ToRgb32);

// Pixel by pixel, of any width; the fourth byte is A. Nothing drifts.
constexpr Variants<Yuy2ToRgbKernel> kAyuv32ToRgb32 = PXB_VARIANTS_FROM_SSE2(ConvertAyuv32ToRgb32);

}  // namespace pxb
