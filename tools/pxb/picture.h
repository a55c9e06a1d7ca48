// A picture: an image from PxbNew whose extents in memory are even, whatever the picture's size.
// Conversions run over the even image and files get the visible part, so that nobody sees what the
// library does to the last column and row of odd images.
#pragma once
#include <cstdint>
#include <string_view>
#include <vector>

#include "PxbLib.h"
#include "formats.h"

namespace pxb::tool {

class Picture {
  public:
    enum class Contents {
        kBlack,
        kAny,  // for those who write all of it
    };

    // Refuses extents below 1 and images above 2^31 - 1 bytes in the name of `file`.
    Picture(std::string_view file, PixelFormat format, Size size,
            Contents contents = Contents::kBlack);
    Picture(Picture&& other) noexcept;
    Picture& operator=(Picture&& other) noexcept;
    ~Picture();

    PixelFormat format() const { return static_cast<PixelFormat>(image_.format); }
    Size size() const { return size_; }
    ImageBuffer& image() { return image_; }
    const ImageBuffer& image() const { return image_; }

    std::vector<Plane> Planes() const { return PlanesOf(image_, size_); }
    std::uint8_t* Row(const Plane& plane, std::int64_t y) const {
        return image_.data + plane.offset + plane.stride * y;
    }
    std::uint8_t* Row(std::int64_t y) const {  // of an interleaved format
        return image_.data + std::int64_t{image_.stride} * y;
    }

  private:
    ImageBuffer image_{};
    Size size_;
};

// While one exists, the memory of pictures that go serves new ones of the same format and size. To
// get, clear and return it takes longer than most conversions.
class SparePictures {
  public:
    SparePictures();
    SparePictures(const SparePictures&) = delete;
    SparePictures& operator=(const SparePictures&) = delete;
    ~SparePictures();
};

// Fills the column and row beyond an odd size with copies of their neighbours. Readers call this
// once the visible part is complete.
void RepeatEdges(Picture& picture);

Picture CopyOf(std::string_view file, const Picture& picture);

inline constexpr std::int64_t kDefaultMaxPixels = 1 << 28;

// Throws what the constructor would throw, for readers that know the size before they allocate.
// They also say what is the most that a file may claim.
void CheckSize(std::string_view file, PixelFormat format, Size size,
               std::int64_t max_pixels = INT64_MAX);

}  // namespace pxb::tool
