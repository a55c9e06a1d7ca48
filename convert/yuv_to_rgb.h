// YUV to RGB kernels, ITU-R BT.601 studio range, and their variants.
//
// Each converts whole pairs of columns (4:2:0: and of rows). A negative height turns the image
// upside down: the RGB one for planar sources, the YUY2 one otherwise. Strides are bytes.
#pragma once
#include "convert/kernels.h"
#include "core/rows.h"

namespace pxb {

#define PXB_DECLARE_YUV_TO_RGB(target)                                  \
    namespace target {                                                  \
    Planar420ToPackedKernel ConvertYuv420ToRgb24, ConvertYuv420ToRgb32; \
    PackedToPackedKernel ConvertYuy2ToRgb32, ConvertAyuv32ToRgb32;      \
    Planar422ToPackedKernel ConvertYuv422ToRgb24;                       \
    Nv12ToPackedKernel ConvertNv12ToRgb32;                              \
    }
PXB_TARGETS(PXB_DECLARE_YUV_TO_RGB)
#undef PXB_DECLARE_YUV_TO_RGB

// The first 16 * (width / 16) pixels of each row, for ConvertYuy2ToRgb24.
#define PXB_DECLARE_RUN(target)                 \
    namespace target {                          \
    PackedToPackedKernel ConvertYuy2RunToRgb24; \
    }
PXB_SIMD_TARGETS(PXB_DECLARE_RUN)
#undef PXB_DECLARE_RUN

// A single kernel for all processors: in each row the first 16 * (width / 16) pixels take the SIMD
// arithmetic and the rest the plain one. Callers depend on both.
PackedToPackedKernel ConvertYuy2ToRgb24;

constexpr auto kYuv420ToRgb24 = PXB_VARIANTS_FROM_MMX(ConvertYuv420ToRgb24);
constexpr auto kYuv420ToRgb32 = PXB_VARIANTS_FROM_MMX(ConvertYuv420ToRgb32);
constexpr Variants<PackedToPackedKernel> kYuy2ToRgb24 = {ConvertYuy2ToRgb24};
constexpr auto kYuy2ToRgb32 = PXB_VARIANTS_FROM_MMX(ConvertYuy2ToRgb32);
constexpr auto kYuv422ToRgb24 = PXB_VARIANTS_FROM_SSE2(ConvertYuv422ToRgb24);
constexpr auto kNv12ToRgb32 = PXB_VARIANTS_FROM_SSE2(ConvertNv12ToRgb32);

// Pixel by pixel, of any width; the fourth byte is A. Nothing drifts.
constexpr auto kAyuv32ToRgb32 = PXB_VARIANTS_FROM_SSE2(ConvertAyuv32ToRgb32);

}  // namespace pxb
