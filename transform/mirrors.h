// Mirrors in place. `first` is the top left pixel of what is mirrored; strides are bytes and may be
// negative; widths are pixels, heights rows, none of them below 0.
#pragma once
#include <cstddef>

#include "core/rows.h"
#include "core/variants.h"

namespace pxb {

// Pixels of 1, 3 or 4 bytes, each row from left to right.
using MirrorPixelsKernel = void(Byte* first, std::ptrdiff_t stride, std::int32_t width,
                                std::int32_t height, int bytes_per_pixel);

// Groups Y0 U Y1 V of two pixels, of which `width` has a whole number. Chroma goes with its group and
// the two samples of luma change places, save in the middle one of an odd number of groups: it stays
// as it is, and callers depend on that.
using MirrorYuy2Kernel = void(Byte* first, std::ptrdiff_t stride, std::int32_t width,
                              std::int32_t height);

// From top to bottom: row_bytes bytes of row i and of row height - 1 - i change places. The rows must
// not overlap.
using ExchangeRowsKernel = void(Byte* first, std::ptrdiff_t stride, std::ptrdiff_t row_bytes,
                                std::int32_t height);

#define PXB_DECLARE_MIRRORS(target)  \
    namespace target {               \
    MirrorPixelsKernel MirrorPixels; \
    MirrorYuy2Kernel MirrorYuy2;     \
    ExchangeRowsKernel ExchangeRows; \
    }
PXB_TARGETS(PXB_DECLARE_MIRRORS)
#undef PXB_DECLARE_MIRRORS

constexpr auto kMirrorPixels = PXB_VARIANTS_FROM_SSE2(MirrorPixels);
constexpr auto kMirrorYuy2 = PXB_VARIANTS_FROM_MMX(MirrorYuy2);
constexpr auto kExchangeRows = PXB_VARIANTS_FROM_SSE2(ExchangeRows);

// The same where rows are longer than the way from one to the next: as if row i were saved, the other
// row copied over it, and the saved one over the other.
ExchangeRowsKernel ExchangeOverlappingRows;

}  // namespace pxb
