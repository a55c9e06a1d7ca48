// Calls of the mirrors, and what to say where they would not do what people expect.
#include "flip.h"

#include <string>

#include "error.h"
#include "geometry.h"

namespace pxb::tool {
namespace {

// Empty: nothing speaks against it.
std::string_view Objection(PixelFormat format, Mirror mirror) {
    switch (format) {
        case PXB_RGB8:
            if (mirror == Mirror::kVertical) return "";
            return "the library leaves grey pictures as they are; convert to RGB24 first";
        case PXB_YUV422:
            return "the library would mix up the planes; convert to YUY2 first";
        case PXB_AYUV32:
        case PXB_NV12:
            return "the library does not mirror this format; convert to RGB32 first";
        default:
            return "";
    }
}

// Columns and rows that change sides are the visible ones, unless they share chroma.
Rect Whole(const Picture& picture, Mirror mirror) {
    Rect all = {0, 0, picture.image().width, picture.image().height};
    const bool planar = picture.format() == PXB_YV12 || picture.format() == PXB_I420;
    if (mirror == Mirror::kHorizontal && !planar && picture.format() != PXB_YUY2)
        all.right = picture.size().width;
    if (mirror == Mirror::kVertical && !planar) all.bottom = picture.size().height;
    return all;
}

}  // namespace

Picture Flip(std::string_view file, const Picture& picture, Mirror mirror,
             const std::optional<Rect>& part) {
    const PixelFormat format = picture.format();
    if (const std::string_view objection = Objection(format, mirror); !objection.empty())
        throw Error(file, "flip", FormatName(format), objection);
    if (part) CheckRect(file, "--rect", *part, picture.size());
    Picture target = CopyOf(file, picture);
    const Rect rect = part.value_or(Whole(picture, mirror));
    const std::int32_t result = mirror == Mirror::kHorizontal
                                    ? PxbFliphorizontal(&target.image(), &rect)
                                    : PxbFlipvertical(&target.image(), &rect);
    if (result != PXB_SUCCESS)
        throw Error(file, "--rect", ToString(rect),
                    "a part of a " + std::string(FormatName(format)) + " picture has even edges");
    RepeatEdges(target);
    return target;
}

}  // namespace pxb::tool
