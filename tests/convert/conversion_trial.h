// One conversion between images in guarded memory, compared with the reference.
#pragma once
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "PxbLib.h"
#include "guarded_memory.h"
#include "reference.h"

namespace pxb::test {

struct FormatPair {
    PixelFormat from, to;
    bool operator==(const FormatPair&) const = default;
};

struct Size {
    int width, height;
};

constexpr bool IsRgb(int format) {
    return format == PXB_RGB24 || format == PXB_RGB32;
}
constexpr bool Is420(int format) {
    return format == PXB_YV12 || format == PXB_I420 || format == PXB_NV12;
}

// Bytes from one pixel to the next in the first plane.
int BytesPerPixel(int format);

// A record without data, of rows `padding` bytes longer than needed; bottom_up: of negative stride.
ImageBuffer Describe(PixelFormat format, Size size, int padding, bool bottom_up = false);

// Where the bytes that a conversion visits lie between the inaccessible pages.
enum class Placement {
    kFront,  // the first follows a page
    kBack,   // a page follows the last
    kSplit,  // a page follows the last byte of luma; a planar image is made taller for that
};
constexpr Placement kPlacements[] = {Placement::kFront, Placement::kBack, Placement::kSplit};

using Converter = std::function<int32_t(ImageBuffer* dst, const ImageBuffer* src)>;

class ConversionTrial {
  public:
    ConversionTrial();

    // `convert` must answer 0 and leave in the destination's memory, also around the image, what
    // the reference leaves there. The records come without data.
    testing::AssertionResult Run(ImageBuffer dst, ImageBuffer src, Placement placement,
                                 ::Processor arithmetic, const Converter& convert);

  private:
    GuardedMemory dst_memory_, src_memory_;
    std::vector<std::uint8_t> background_, expected_;
};

}  // namespace pxb::test
