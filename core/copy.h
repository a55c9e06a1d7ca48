// Copies of rows, for kernels and front ends of any format.
#pragma once
#include "core/rows.h"

namespace pxb {

// The bytes may not overlap, but dst may be src.
void CopyBytes(Byte* dst, const Byte* src, std::size_t bytes);

// Copies row_bytes bytes of each row. A negative height turns the source upside down; a negative
// number of bytes copies nothing.
void CopyRows(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
              std::ptrdiff_t row_bytes, std::int32_t height);

}  // namespace pxb
