// Copies and depth changes between RGB8, RGB24 and RGB32. Rows are `width` pixels, of any number;
// strides are bytes; a negative height turns the source upside down.
#pragma once
#include "convert/processor.h"
#include "core/rows.h"

namespace pxb {

using RgbCopyKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* src,
                           std::int32_t src_stride, std::int32_t width, std::int32_t height);

#define PXB_DECLARE_RGB_COPIES(target)                           \
    namespace target {                                           \
    RgbCopyKernel ConvertRgb24ToRgb32; /* fourth byte 0 */       \
    RgbCopyKernel ConvertRgb32ToRgb24; /* fourth byte dropped */ \
    RgbCopyKernel ConvertRgb8ToRgb24;  /* grey three times */    \
    }
PXB_DECLARE_RGB_COPIES(plain)
PXB_DECLARE_RGB_COPIES(pairwise)
PXB_DECLARE_RGB_COPIES(mmx)
PXB_DECLARE_RGB_COPIES(sse2)
PXB_DECLARE_RGB_COPIES(avx2)
PXB_DECLARE_RGB_COPIES(avx512)
#undef PXB_DECLARE_RGB_COPIES

// Copies are the same for all processors: no vector loop moves bytes faster than the string move.
RgbCopyKernel CopyRgb24, CopyRgb32;

constexpr Variants<RgbCopyKernel> kCopyRgb24 = {CopyRgb24};
constexpr Variants<RgbCopyKernel> kCopyRgb32 = {CopyRgb32};
constexpr Variants<RgbCopyKernel> kRgb24ToRgb32 = PXB_VARIANTS_FROM_MMX(ConvertRgb24ToRgb32);
constexpr Variants<RgbCopyKernel> kRgb32ToRgb24 = PXB_VARIANTS_FROM_MMX(ConvertRgb32ToRgb24);
constexpr Variants<RgbCopyKernel> kRgb8ToRgb24 = PXB_VARIANTS_FROM_MMX(ConvertRgb8ToRgb24);

}  // namespace pxb
