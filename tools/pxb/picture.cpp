// Pictures: memory from the library, even extents, repeated edges.
#include "picture.h"

#include <cstring>
#include <string>
#include <utility>

#include "error.h"

namespace pxb::tool {
namespace {

constexpr std::int64_t kMaxBytes = 0x7fffffff;  // what PxbNew can give

Size Even(Size size) {
    return {size.width + size.width % 2, size.height + size.height % 2};
}

std::string Describe(PixelFormat format, Size size) {
    return ToString(size) + " " + std::string(FormatName(format));
}

}  // namespace

void CheckSize(std::string_view file, PixelFormat format, Size size) {
    const auto refuse = [&](std::string_view reason) {
        throw Error(file, "size", Describe(format, size), reason);
    };
    if (size.width < 1 || size.height < 1) refuse("width and height must be at least 1");
    // The first test keeps the second from overflowing.
    if (std::int64_t{size.width} * size.height >= kMaxBytes ||
        FrameBytes(format, Even(size)) > kMaxBytes)
        refuse("more than 2147483647 bytes");
}

Picture::Picture(std::string_view file, PixelFormat format, Size size) : size_(size) {
    CheckSize(file, format, size);
    const Size even = Even(size);
    image_.format = format;
    image_.width = even.width;
    image_.height = even.height;
    if (PxbNew(&image_, 0) != PXB_SUCCESS)
        throw Error(file, "size", Describe(format, size), "not enough memory");
}

Picture::Picture(Picture&& other) noexcept
    : image_(std::exchange(other.image_, ImageBuffer{})), size_(other.size_) {}

Picture& Picture::operator=(Picture&& other) noexcept {
    std::swap(image_, other.image_);
    std::swap(size_, other.size_);
    return *this;
}

Picture::~Picture() {
    PxbDelete(&image_);
}

Picture CopyOf(std::string_view file, const Picture& picture) {
    Picture copy(file, picture.format(), picture.size());
    const Size in_memory = {picture.image().width, picture.image().height};
    for (const Plane& plane : PlanesOf(picture.image(), in_memory))
        for (std::int64_t y = 0; y < plane.rows; ++y)
            std::memcpy(copy.Row(plane, y), picture.Row(plane, y),
                        static_cast<std::size_t>(plane.row_bytes));
    return copy;
}

void RepeatEdges(Picture& picture) {
    const Size size = picture.size();
    for (const Plane& plane : picture.Planes()) {
        const std::int64_t end = std::int64_t{size.width} * plane.pixel_step;
        if (size.width % 2 != 0 && plane.pixel_bytes != 0)
            for (std::int64_t y = 0; y < plane.rows; ++y)
                std::memcpy(picture.Row(plane, y) + end,
                            picture.Row(plane, y) + end - plane.pixel_step, plane.pixel_bytes);
        if (size.height % 2 != 0 && !plane.halved_rows)
            std::memcpy(picture.Row(plane, plane.rows), picture.Row(plane, plane.rows - 1),
                        static_cast<std::size_t>(plane.stride));
    }
}

}  // namespace pxb::tool
