// Interleaved pixels as the transforms see them.
#pragma once
#include <cstddef>
#include <cstdint>

#include "core/planes.h"

namespace pxb {

template <class B>
struct Raster {
    B* data;
    Extent size;
    std::ptrdiff_t stride;
    std::int32_t bytes_per_pixel;

    B* Row(std::ptrdiff_t y) const { return data + y * stride; }
};

// The source of a warp. Coordinates just outside stand for the nearest pixel: row `height` repeats
// the last row, column `width` the last column.
struct SourceRowTable : Raster<const Byte> {
    std::ptrdiff_t RowOffset(std::int64_t v) const {
        return static_cast<std::ptrdiff_t>(Nearest(v, size.height)) * stride;
    }
    std::ptrdiff_t ColumnOffset(std::int64_t u) const {
        return static_cast<std::ptrdiff_t>(Nearest(u, size.width)) * bytes_per_pixel;
    }

  private:
    static std::int64_t Nearest(std::int64_t at, std::int32_t count) {
        if (at < 0) return 0;
        return at < count ? at : count - 1;
    }
};

}  // namespace pxb
