// Calls a kernel with what an image record says. As kernels want it, an image of negative stride is
// named by its last row and a negative height.
#pragma once
#include "convert/rgb_copies.h"
#include "convert/rgb_to_yuv.h"
#include "convert/yuv_reshuffles.h"
#include "convert/yuv_to_rgb.h"
#include "core/planes.h"

namespace pxb::test {

// Returns the height to name.
inline int32_t TurnUp(ImageBuffer& image, int32_t height) {
    if (image.stride >= 0) return height;
    image.data += (height - 1) * image.stride;
    image.stride = -image.stride;
    return -height;
}

// From packed to packed, whatever the formats.
inline void CallKernel(RgbCopyKernel* kernel, ImageBuffer dst, ImageBuffer src) {
    const Extent area = CommonExtent(dst, src);
    const int32_t height = TurnUp(src, area.height);
    kernel(dst.data, dst.stride, src.data, src.stride, area.width, height);
}

// From 4:2:0 to packed.
inline void CallKernel(Yuv420ToRgbKernel* kernel, ImageBuffer dst, ImageBuffer src) {
    const Extent area = CommonExtent(dst, src);
    const Planes420 from = PlanesOf420(src);
    const int32_t height = TurnUp(dst, area.height);
    kernel(dst.data, dst.stride, from.y, from.u, from.v, from.stride, from.chroma_stride,
           area.width, height);
}

// From packed to 4:2:0.
inline void CallKernel(RgbToYuv420Kernel* kernel, ImageBuffer dst, ImageBuffer src) {
    const Extent area = CommonExtent(dst, src);
    const Planes420 to = PlanesOf420(dst);
    const int32_t height = TurnUp(src, area.height);
    kernel(to.y, to.u, to.v, to.stride, to.chroma_stride, src.data, src.stride, area.width, height);
}

inline void CallKernel(RgbToNv12Kernel* kernel, ImageBuffer dst, ImageBuffer src) {
    const Extent area = CommonExtent(dst, src);
    const int32_t height = TurnUp(src, area.height);
    kernel(dst.data, dst.data + FirstPlaneBytes(dst), dst.stride, dst.stride, src.data, src.stride,
           area.width, height);
}

inline void CallKernel(Nv12ToRgbKernel* kernel, ImageBuffer dst, ImageBuffer src) {
    const Extent area = CommonExtent(dst, src);
    const int32_t height = TurnUp(dst, area.height);
    kernel(dst.data, dst.stride, src.data, src.data + FirstPlaneBytes(src), src.stride, src.stride,
           area.width, height);
}

inline void CallKernel(Yuv422ToRgbKernel* kernel, ImageBuffer dst, ImageBuffer src) {
    const Extent area = CommonExtent(dst, src);
    const Planes422 from = PlanesOf422(src.data, dst.width, area.height);
    const int32_t height = TurnUp(dst, area.height);
    kernel(area.width, dst.data, dst.stride, from.y, area.width, from.u, from.v, area.width,
           height);
}

inline void CallKernel(Yuy2SplitKernel* kernel, ImageBuffer dst, ImageBuffer src) {
    const Extent area = CommonExtent(dst, src);
    const Planes422 to = PlanesOf422(dst.data, dst.width, area.height);
    kernel(to.y, to.u, to.v, src.data, area.height, area.width / 2);
}

inline void CallKernel(Yuy2MergeKernel* kernel, ImageBuffer dst, ImageBuffer src) {
    const Extent area = CommonExtent(dst, src);
    const Planes422 from = PlanesOf422(src.data, dst.width, area.height);
    kernel(from.y, from.u, from.v, dst.data, area.height, area.width / 2);
}

}  // namespace pxb::test
