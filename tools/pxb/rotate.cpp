#include "rotate.h"

#include <string>

#include "error.h"

namespace pxb::tool {
namespace {

bool IsPlanar(PixelFormat format) {
    return format == PXB_YV12 || format == PXB_I420;
}

// Angles at which the library copies, which it compares as they are: 450 is not 90.
bool IsExact(std::int32_t angle) {
    return angle == 90 || angle == 180 || angle == 270;
}

// Empty: nothing speaks against it.
std::string_view Objection(PixelFormat format, std::int32_t angle) {
    switch (format) {
        case PXB_RGB24:
        case PXB_RGB32:
            return "";
        case PXB_YV12:
        case PXB_I420:
            if (IsExact(angle)) return "";
            return "the library turns 4:2:0 by 90, 180 and 270 degrees; convert to RGB24 first";
        case PXB_RGB8:
            return "the library turns no more than the edges of grey pictures; convert to RGB24 "
                   "first";
        case PXB_YUY2:
        case PXB_YUV422:
            return "the library does not turn this format; convert to RGB24 first";
        default:
            return "the library does not turn this format; convert to RGB32 first";
    }
}

// The exact copies go by the new size and would leave the old picture.
void CheckNewSize(std::string_view file, const Picture& picture, std::int32_t angle, Size size,
                  Size turned) {
    const bool same = size.width == turned.width && size.height == turned.height;
    const bool whole = IsPlanar(picture.format()) || angle == 180;
    if (same || !IsExact(angle)) return;
    if (!whole && size.width <= turned.width && size.height <= turned.height) return;
    throw Error(
        file, "--size", ToString(size),
        "at this angle it should be " + std::string(whole ? "" : "at most ") + ToString(turned));
}

}  // namespace

bool IsQuarter(std::int32_t angle_degrees) {
    return angle_degrees % 180 != 0 && angle_degrees % 90 == 0;
}

Picture Rotate(std::string_view file, const Picture& picture, const Rotation& rotation) {
    const PixelFormat format = picture.format();
    const std::int32_t angle = rotation.angle_degrees;
    if (const std::string_view objection = Objection(format, angle); !objection.empty())
        throw Error(file, "rotate",
                    std::string(FormatName(format)) + " by " + std::to_string(angle), objection);
    const auto [width, height] = picture.size();
    const Size turned = IsQuarter(angle) ? Size{height, width} : Size{width, height};
    const Size size = rotation.size.value_or(turned);
    CheckNewSize(file, picture, angle, size, turned);

    Picture target(file, format, size);
    ImageBuffer to = target.image(), from = picture.image();
    if (!IsPlanar(format)) {  // the visible part, about whose centre the picture turns
        to.width = size.width, to.height = size.height;
        from.width = width, from.height = height;
    }
    PxbRotate(&to, &from, angle);
    RepeatEdges(target);
    return target;
}

}  // namespace pxb::tool
