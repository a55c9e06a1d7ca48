// Plane geometry: the one place that turns an image record into addresses of planes. Offsets are
// computed in 64 bits, so that images beyond 2 GiB work; divisions truncate toward zero.
#pragma once
#include <algorithm>
#include <cstdint>

#include "PxbLib.h"
#include "core/byte.h"

namespace pxb {

struct Extent {
    std::int32_t width, height;  // pixels and rows, never negative
};

// The address `offset` bytes on. Records may claim extents that no memory of 32 bits has: such an
// address wraps, and no row of it is ever used.
inline Byte* Offset(Byte* data, std::int64_t offset) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): sums of pointers must not overflow
    return reinterpret_cast<Byte*>(reinterpret_cast<std::uintptr_t>(data) +
                                   static_cast<std::uintptr_t>(offset));
}

// YV12 and I420. Each chroma plane has height / 2 rows, chroma_stride bytes apart.
struct Planes420 {
    Byte *y, *u, *v;
    std::int32_t stride, chroma_stride;
};

inline std::int64_t FirstPlaneBytes(const ImageBuffer& image) {
    return std::int64_t{image.stride} * image.height;
}

inline Planes420 PlanesOf420(Byte* data, std::int32_t stride, std::int64_t luma_bytes,
                             bool v_comes_first) {
    Byte* const first = Offset(data, luma_bytes);
    Byte* const second = Offset(first, luma_bytes / 4);
    return {data, v_comes_first ? second : first, v_comes_first ? first : second, stride,
            stride / 2};
}

inline Planes420 PlanesOf420(const ImageBuffer& image) {
    return PlanesOf420(image.data, image.stride, FirstPlaneBytes(image), image.format == PXB_YV12);
}

// NV12. The chroma plane has height / 2 rows of pairs U V, `stride` bytes apart.
struct PlanesNv12 {
    Byte *y, *uv;
    std::int32_t stride;
};

inline PlanesNv12 PlanesOfNv12(const ImageBuffer& image) {
    return {image.data, Offset(image.data, FirstPlaneBytes(image)), image.stride};
}

// YUV422 as planes: tight rows of width (u, v: width / 2) bytes.
struct Planes422 {
    Byte *y, *u, *v;
};

inline Planes422 PlanesOf422(Byte* data, std::int64_t width, std::int64_t height) {
    Byte* const u = Offset(data, width * height);
    return {data, u, Offset(u, width / 2 * height)};
}

// An image with a negative extent has no pixels, nor has a planar one whose planes have a negative
// size. Interleaved rows may lie in memory in either direction.
inline bool HasPixels(const ImageBuffer& image) {
    const bool planar =
        image.format == PXB_YV12 || image.format == PXB_I420 || image.format == PXB_NV12;
    return image.width >= 0 && image.height >= 0 && !(planar && image.stride < 0);
}

// The top left area that two images share.
inline Extent CommonExtent(const ImageBuffer& a, const ImageBuffer& b) {
    if (!HasPixels(a) || !HasPixels(b)) return {0, 0};
    return {std::min(a.width, b.width), std::min(a.height, b.height)};
}

// All of the source, for the operations that walk it whatever the size of the destination.
inline Extent SourceExtent(const ImageBuffer& to, const ImageBuffer& from) {
    if (!HasPixels(to) || !HasPixels(from)) return {0, 0};
    return {from.width, from.height};
}

}  // namespace pxb
