// Copies and depth changes between RGB8, RGB24 and RGB32. Rows are `width` pixels, of any number;
// strides are bytes; a negative height turns the source upside down.
#pragma once
#include "convert/kernels.h"
#include "core/rows.h"

namespace pxb {

#define PXB_DECLARE_RGB_COPIES(target)                                  \
    namespace target {                                                  \
    PackedToPackedKernel ConvertRgb24ToRgb32; /* fourth byte 0 */       \
    PackedToPackedKernel ConvertRgb32ToRgb24; /* fourth byte dropped */ \
    PackedToPackedKernel ConvertRgb8ToRgb24;  /* grey three times */    \
    }
PXB_TARGETS(PXB_DECLARE_RGB_COPIES)
#undef PXB_DECLARE_RGB_COPIES

// Copies are the same for all processors: they choose by the size of a row, see core/copy.h.
PackedToPackedKernel CopyRgb24, CopyRgb32;

constexpr Variants<PackedToPackedKernel> kCopyRgb24 = {CopyRgb24};
constexpr Variants<PackedToPackedKernel> kCopyRgb32 = {CopyRgb32};
constexpr auto kRgb24ToRgb32 = PXB_VARIANTS_FROM_MMX(ConvertRgb24ToRgb32);
constexpr auto kRgb32ToRgb24 = PXB_VARIANTS_FROM_MMX(ConvertRgb32ToRgb24);
constexpr auto kRgb8ToRgb24 = PXB_VARIANTS_FROM_MMX(ConvertRgb8ToRgb24);

}  // namespace pxb
