// One call on a source and a destination in guarded memory, compared with a reference.
#pragma once
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "support/guarded_memory.h"
#include "support/image.h"

namespace pxb::test {

using Int = std::int64_t;

// Offsets of the first byte and of the end of what is visited, from the image's data.
struct Span {
    Int first = INT64_MAX, end = INT64_MIN;

    void Add(Int offset, Int bytes) {
        if (bytes <= 0) return;
        first = std::min(first, offset);
        end = std::max(end, offset + bytes);
    }
    bool IsEmpty() const { return first > end; }
};

struct Visited {
    Span luma, chroma;  // packed images: all in luma

    Span All() const {
        return {std::min(luma.first, chroma.first), std::max(luma.end, chroma.end)};
    }
};

using Converter = std::function<std::int32_t(ImageBuffer* dst, const ImageBuffer* src)>;
using Reference = std::function<void(const ImageBuffer& dst, const ImageBuffer& src)>;

class Trial {
  public:
    Trial();

    // Where the bytes that a call visits lie between the inaccessible pages.
    enum class Placement {
        kFront,  // the first follows a page
        kBack,   // a page follows the last
        kSplit,  // a page follows the last byte of luma; for planar images made so tall
    };
    static void Place(ImageBuffer& image, const GuardedMemory& memory, const Visited& visited,
                      Placement placement);

    // `convert` must answer 0, leave in the destination's memory, also around the image, what the
    // reference leaves there, and not write to the source. Both images have their places.
    testing::AssertionResult Compare(ImageBuffer dst, ImageBuffer src, const Reference& reference,
                                     const Converter& convert);
    // The same of several, one after another, beside one run of the reference.
    testing::AssertionResult CompareEach(ImageBuffer dst, ImageBuffer src,
                                         const Reference& reference,
                                         const std::vector<Converter>& converters);

    GuardedMemory dst_memory, src_memory;

  private:
    testing::AssertionResult CompareOne(ImageBuffer dst, ImageBuffer src, const Converter& convert);

    std::vector<std::uint8_t> background_, expected_;
};

}  // namespace pxb::test
