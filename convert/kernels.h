// The signatures of conversion kernels, by what lies on either side. "Packed" is anything that
// starts at one address, whatever its bytes. Strides are bytes, width and height pixels and rows;
// what a negative height means, each family says.
#pragma once
#include "core/byte.h"
#include "core/variants.h"

namespace pxb {

using PackedToPackedKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* src,
                                  std::int32_t src_stride, std::int32_t width, std::int32_t height);

using Planar420ToPackedKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* y,
                                     const Byte* u, const Byte* v, std::int32_t y_stride,
                                     std::int32_t chroma_stride, std::int32_t width,
                                     std::int32_t height);

using PackedToPlanar420Kernel = void(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                                     std::int32_t chroma_stride, const Byte* src,
                                     std::int32_t src_stride, std::int32_t width,
                                     std::int32_t height);

// Chroma as pairs U V.
using Nv12ToPackedKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* uv,
                                std::int32_t y_stride, std::int32_t uv_stride, std::int32_t width,
                                std::int32_t height);

using PackedToNv12Kernel = void(Byte* y, Byte* uv, std::int32_t y_stride, std::int32_t uv_stride,
                                const Byte* src, std::int32_t src_stride, std::int32_t width,
                                std::int32_t height);

// After the width / 2 samples of a row each chroma pointer advances by chroma_advance - width.
using Planar422ToPackedKernel = void(std::int32_t width, Byte* dst, std::int32_t dst_stride,
                                     const Byte* y, std::int32_t y_stride, const Byte* u,
                                     const Byte* v, std::int32_t chroma_advance,
                                     std::int32_t height);

// Tight runs on both sides: `height` rows of `half_width` pairs of pixels.
using TightPackedToPlanar422Kernel = void(Byte* y, Byte* u, Byte* v, const Byte* packed,
                                          std::int32_t height, std::int32_t half_width);
using TightPlanar422ToPackedKernel = void(const Byte* y, const Byte* u, const Byte* v, Byte* packed,
                                          std::int32_t height, std::int32_t half_width);

// One byte of each packed pixel; `byte` is its place, 0 to 3.
using PackedToChannelKernel = void(Byte* dst, std::int32_t dst_stride, const Byte* src,
                                   std::int32_t src_stride, std::int32_t width, std::int32_t height,
                                   std::int32_t byte);

}  // namespace pxb
