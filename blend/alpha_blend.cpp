// PxbAlphaBlend: checks the records, finds the alpha plane, checks the rectangles, and chooses the
// kernel by the format.
#include <cstdint>

#include "blend/blend_kernels.h"
#include "core/planes.h"

namespace pxb {
namespace {

// The part of one image that takes part.
struct Side {
    const ImageBuffer& image;
    Rect rect;

    Side(const ImageBuffer& all, const Rect* part)
        : image(all), rect(part ? *part : Rect{0, 0, all.width, all.height}) {}

    // Right and bottom are compared as unsigned numbers: the whole of an image whose width or height
    // is negative fits, and is found to be turned round.
    bool Fits() const {
        const auto is_within = [](std::int32_t end, std::int32_t extent) {
            return static_cast<std::uint32_t>(end) <= static_cast<std::uint32_t>(extent);
        };
        return rect.left >= 0 && rect.top >= 0 && is_within(rect.right, image.width) &&
               is_within(rect.bottom, image.height) && rect.left <= rect.right &&
               rect.top <= rect.bottom;
    }
    std::int32_t width() const { return rect.right - rect.left; }
    std::int32_t height() const { return rect.bottom - rect.top; }

    // Of an image with samples of this many bytes, the rectangle's top left one.
    Byte* First(int bytes_per_pixel) const { return FirstOf(image, bytes_per_pixel); }
    // The same place in a plane that goes with the image.
    Byte* FirstOf(const ImageBuffer& plane, int bytes_per_pixel) const {
        return plane.data + std::ptrdiff_t{rect.top} * plane.stride +
               std::ptrdiff_t{rect.left} * bytes_per_pixel;
    }
    BlendPlanes Planes() const {
        const Planes420 planes = PlanesOf420(image);
        const std::ptrdiff_t chroma =
            std::ptrdiff_t{rect.top / 2} * planes.chroma_stride + rect.left / 2;
        return {First(1),      planes.u + chroma,    planes.v + chroma,
                planes.stride, planes.chroma_stride, FirstPlaneBytes(image) / 4 - chroma};
    }
};

// What the kernels demand of their rectangles.
bool AreBlendable(const Side& to, const Side& from) {
    return to.Fits() && from.Fits() && to.width() == from.width() && to.height() == from.height();
}

void BlendPacked(const Side& to, const Side& from, const ImageBuffer& alpha, int bytes_per_pixel,
                 BlendPackedKernel* kernel) {
    kernel(to.First(bytes_per_pixel), to.image.stride, from.First(bytes_per_pixel),
           from.image.stride, from.FirstOf(alpha, 1), alpha.stride, from.width(), from.height());
}

void BlendByOwnAlpha(const Side& to, const Side& from) {
    kBlendRgb32ByOwnAlpha.Choose()(to.First(4), to.image.stride, from.First(4), from.image.stride,
                                   from.width(), from.height());
}

void BlendPlanar(const Side& to, const Side& from, const ImageBuffer& alpha) {
    kBlendYuv420.Choose()(to.Planes(), from.Planes(), from.FirstOf(alpha, 1), alpha.stride,
                          from.width(), from.height());
}

// `alpha` is null for RGB32 alone.
ResultCode Blend(const Side& to, const Side& from, const ImageBuffer* alpha) {
    if (!AreBlendable(to, from)) return PXB_FAILURE;
    if (!HasPixels(to.image) || !HasPixels(from.image)) return PXB_SUCCESS;
    switch (from.image.format) {
        case PXB_RGB24:
            BlendPacked(to, from, *alpha, 3, kBlendRgb24.Choose());
            break;
        case PXB_RGB32:
            if (alpha)
                BlendPacked(to, from, *alpha, 4, kBlendRgb32.Choose());
            else
                BlendByOwnAlpha(to, from);
            break;
        case PXB_YUY2:
            BlendPacked(to, from, *alpha, 2, kBlendYuy2.Choose());
            break;
        default:
            BlendPlanar(to, from, *alpha);
    }
    return PXB_SUCCESS;
}

bool HasData(const ImageBuffer* image) {
    return image && image->data;
}

}  // namespace
}  // namespace pxb

int32_t PXB_CALL PxbAlphaBlend(ImageBuffer* dst, const ImageBuffer* src,
                               const ImageBuffer* alphaImage, const Rect* dstRect,
                               const Rect* srcRect) {
    using namespace pxb;
    if (dst->format != src->format) return PXB_BAD_ARGUMENT;
    if (!dst->data) return PXB_BAD_ARGUMENT;
    if (!src->data) return PXB_BAD_ARGUMENT;
    const Side to(*dst, dstRect), from(*src, srcRect);
    const ImageBuffer* const given = HasData(alphaImage) ? alphaImage : nullptr;
    switch (src->format) {
        case PXB_RGB24:
        case PXB_YV12:
        case PXB_YUY2:
        case PXB_I420: {
            const ImageBuffer* const alpha = given ? given : src->alpha;
            return HasData(alpha) ? Blend(to, from, alpha) : PXB_FAILURE;
        }
        case PXB_RGB32:  // the companion is not asked
            return Blend(to, from, given);
        case PXB_RGB8:
        case PXB_YUV422:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}
