// An image of the benchmark: tightly packed, painted with smooth ramps, at a chosen place.
#pragma once
#include <cstddef>
#include <memory>

#include "PxbLib.h"

namespace pxb::bench {

class Frame {
  public:
    // Width and height must be even, so that no format rounds. The pixels start `offset` bytes after
    // a page boundary.
    Frame(int format, int width, int height, std::size_t offset);

    ImageBuffer record = {};
    std::size_t bytes = 0;       // of all planes
    std::uint8_t* data[4] = {};  // planes in the order Y, U, V, also in YV12
    int stride[4] = {};          // bytes
    int width() const { return record.width; }
    int height() const { return record.height; }

    // Any image of this size fits: memory up to four bytes a pixel is there and has been written.
    std::size_t capacity() const { return std::size_t{4} * record.width * record.height; }

  private:
    void AddPlane(int row_bytes, int rows, const char* channels);
    std::unique_ptr<std::uint8_t[]> memory_;
};

}  // namespace pxb::bench
