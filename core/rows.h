// How kernels walk planes and packed images: row by row, or by pairs of rows.
#pragma once
#include <cstddef>
#include <cstdint>

#include "core/byte.h"

namespace pxb {

template <class T>
class Rows {
  public:
    // Visits `group` rows at a time (1 or 2). `drift` bytes are missing from each advance.
    PXB_INLINE Rows(T* first, std::ptrdiff_t stride, int group = 1, std::ptrdiff_t drift = 0)
        : at_(first), stride_(stride), advance_(group * stride - drift) {}

    // Row 0 or 1 of the current group.
    PXB_INLINE T* operator[](int row) const { return at_ + row * stride_; }
    PXB_INLINE void Next() { at_ += advance_; }

  private:
    T* at_;
    std::ptrdiff_t stride_, advance_;
};

// A negative height names an image that is stored bottom row first: start at its last row in
// memory and walk upward.
template <class T>
PXB_INLINE void FlipIfNegative(std::int32_t height, T*& first, std::ptrdiff_t& stride) {
    if (height >= 0) return;
    first += (-static_cast<std::ptrdiff_t>(height) - 1) * stride;
    stride = -stride;
}

PXB_INLINE std::ptrdiff_t CountRows(std::int32_t height) {
    return height < 0 ? -static_cast<std::ptrdiff_t>(height) : height;
}

// convert(dst, src) for each row; a negative height turns the source upside down.
template <class Row>
PXB_INLINE void ForRows(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                        std::ptrdiff_t src_stride, std::int32_t height, const Row& convert) {
    FlipIfNegative(height, src, src_stride);
    Rows to(dst, dst_stride);
    Rows from(src, src_stride);
    for (std::ptrdiff_t rows = CountRows(height); rows > 0; --rows) {
        convert(to[0], from[0]);
        to.Next(), from.Next();
    }
}

}  // namespace pxb
