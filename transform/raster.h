// Interleaved pixels as the transforms see them.
#pragma once
#include <cstddef>
#include <cstdint>

#include "core/byte.h"

namespace pxb {

// Extents are not negative.
template <class B>
struct Raster {
    B* data;
    std::int32_t width, height;
    std::ptrdiff_t stride;
    std::int32_t bytes_per_pixel;

    PXB_INLINE B* Row(std::ptrdiff_t y) const { return data + y * stride; }
};

// The source of a warp. Coordinates just outside stand for the nearest pixel: row `height` repeats
// the last row, column `width` the last column.
struct SourceRowTable : Raster<const Byte> {
    PXB_INLINE std::ptrdiff_t RowOffset(std::int64_t v) const {
        return Nearest(v, height) * stride;
    }
    PXB_INLINE std::ptrdiff_t ColumnOffset(std::int64_t u) const {
        return Nearest(u, width) * bytes_per_pixel;
    }

  private:
    static PXB_INLINE std::ptrdiff_t Nearest(std::int64_t at, std::int32_t count) {
        if (at < 0) return 0;
        return at < count ? static_cast<std::ptrdiff_t>(at) : count - 1;
    }
};

}  // namespace pxb
