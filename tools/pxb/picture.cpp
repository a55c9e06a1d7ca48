// Pictures: memory from the library, even extents, repeated edges.
#include "picture.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "error.h"

namespace pxb::tool {
namespace {

constexpr std::int64_t kMaxBytes = 0x7fffffff;  // what PxbNew can give
constexpr std::size_t kMaxSpares = 1024;

// With what PxbNew does not fill, either.
void Blacken(ImageBuffer& image) {
    PxbFillColor(&image, 0);
    const std::size_t luma = static_cast<std::size_t>(image.stride) * image.height;
    if (image.format == PXB_NV12) {
        std::memset(image.data, 16, luma);
        std::memset(image.data + luma, 128, luma / 2);
    }
    for (std::size_t i = 0; image.format == PXB_AYUV32 && i < luma; i += 4)
        std::memcpy(image.data + i, "\x00\x10\x80\x80", 4);
}

// Never more than pictures were in use at once.
struct Spares {
    std::mutex mutex;
    int keepers = 0;
    std::vector<ImageBuffer> images;
};

Spares& TheSpares() {
    static Spares spares;
    return spares;
}

// As `like` says, or nothing.
std::optional<ImageBuffer> TakeSpare(const ImageBuffer& like) {
    Spares& spares = TheSpares();
    const std::lock_guard lock(spares.mutex);
    const auto fits = [&](const ImageBuffer& image) {
        return image.format == like.format && image.width == like.width &&
               image.height == like.height;
    };
    // The last one is still in caches.
    const auto found = std::find_if(spares.images.rbegin(), spares.images.rend(), fits);
    if (found == spares.images.rend()) return std::nullopt;
    const ImageBuffer taken = std::exchange(*found, spares.images.back());
    spares.images.pop_back();
    return taken;
}

bool KeepSpare(const ImageBuffer& image) {
    Spares& spares = TheSpares();
    const std::lock_guard lock(spares.mutex);
    if (!image.data || spares.images.size() == spares.images.capacity()) return false;
    spares.images.push_back(image);
    return true;
}

Size Even(Size size) {
    return {size.width + size.width % 2, size.height + size.height % 2};
}

std::string Describe(PixelFormat format, Size size) {
    return ToString(size) + " " + std::string(FormatName(format));
}

}  // namespace

void CheckSize(std::string_view file, PixelFormat format, Size size, std::int64_t max_pixels) {
    const auto refuse = [&](const std::string& reason) {
        throw Error(file, "size", Describe(format, size), reason);
    };
    if (size.width < 1 || size.height < 1) refuse("width and height must be at least 1");
    if (std::int64_t{size.width} * size.height > max_pixels)
        refuse("more pixels than --max-pixels " + std::to_string(max_pixels) + " allows");
    // The first test keeps the second from overflowing.
    if (std::int64_t{size.width} * size.height >= kMaxBytes ||
        FrameBytes(format, Even(size)) > kMaxBytes)
        refuse("more than 2147483647 bytes");
}

Picture::Picture(std::string_view file, PixelFormat format, Size size, Contents contents)
    : size_(size) {
    CheckSize(file, format, size);
    const Size even = Even(size);
    image_.format = format;
    image_.width = even.width;
    image_.height = even.height;
    if (const std::optional<ImageBuffer> spare = TakeSpare(image_))
        image_ = *spare;
    else if (PxbNew(&image_, 0) != PXB_SUCCESS)
        throw Error(file, "size", Describe(format, size), "not enough memory");
    if (contents == Contents::kBlack) Blacken(image_);
}

Picture::Picture(Picture&& other) noexcept
    : image_(std::exchange(other.image_, ImageBuffer{})), size_(other.size_) {}

Picture& Picture::operator=(Picture&& other) noexcept {
    std::swap(image_, other.image_);
    std::swap(size_, other.size_);
    return *this;
}

Picture::~Picture() {
    if (!KeepSpare(image_)) PxbDelete(&image_);
}

SparePictures::SparePictures() {
    Spares& spares = TheSpares();
    const std::lock_guard lock(spares.mutex);
    if (spares.keepers++ == 0) spares.images.reserve(kMaxSpares);
}

SparePictures::~SparePictures() {
    Spares& spares = TheSpares();
    const std::lock_guard lock(spares.mutex);
    if (--spares.keepers > 0) return;
    for (ImageBuffer& image : spares.images) PxbDelete(&image);
    spares.images = std::vector<ImageBuffer>();  // without room for more
}

Picture CopyOf(std::string_view file, const Picture& picture) {
    Picture copy(file, picture.format(), picture.size(), Picture::Contents::kAny);
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
