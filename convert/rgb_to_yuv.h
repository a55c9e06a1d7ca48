// RGB to YUV kernels, ITU-R BT.601 studio range in 8-bit fixed point, and their variants. All give
// the same bytes.
//
//     Y = ((66 R + 129 G + 25 B) >> 8) + 16
//     U = ((112 B - 74 G - 38 R) >> s) + 128    V = ((112 R - 94 G - 18 B) >> s) + 128
//
// U and V are of the summed R, G, B of the pixels that share them: s is 10 for blocks of 2 x 2, 9
// for pairs, 8 for single pixels. No result needs a clamp: Y is 16 to 235, U and V 16 to 239.
//
// Whole pairs of columns (4:2:0: and of rows) are converted. A negative height turns the source
// upside down. Strides are bytes.
#pragma once
#include "convert/kernels.h"
#include "core/rows.h"

namespace pxb {

#define PXB_DECLARE_RGB_TO_YUV(target)                                  \
    namespace target {                                                  \
    PackedToPlanar420Kernel ConvertRgb24ToYuv420, ConvertRgb32ToYuv420; \
    PackedToPackedKernel ConvertRgb24ToYuy2, ConvertRgb32ToYuy2;        \
    PackedToNv12Kernel ConvertRgb32ToNv12;                              \
    PackedToPackedKernel ConvertRgb32ToAyuv32;                          \
    }
PXB_TARGETS(PXB_DECLARE_RGB_TO_YUV)
#undef PXB_DECLARE_RGB_TO_YUV

constexpr auto kRgb24ToYuv420 = PXB_VARIANTS_FROM_MMX(ConvertRgb24ToYuv420);
constexpr auto kRgb32ToYuv420 = PXB_VARIANTS_FROM_MMX(ConvertRgb32ToYuv420);
constexpr auto kRgb24ToYuy2 = PXB_VARIANTS_FROM_SSE2(ConvertRgb24ToYuy2);
constexpr auto kRgb32ToYuy2 = PXB_VARIANTS_FROM_MMX(ConvertRgb32ToYuy2);
constexpr auto kRgb32ToNv12 = PXB_VARIANTS_FROM_SSE2(ConvertRgb32ToNv12);

// A = X, and Y, U, V of each pixel by itself, in the order A Y U V. Any width; nothing drifts.
constexpr auto kRgb32ToAyuv32 = PXB_VARIANTS_FROM_SSE2(ConvertRgb32ToAyuv32);

}  // namespace pxb
