// Conversions between images in guarded memory, compared with the reference.
#pragma once
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "convert/format_pairs.h"
#include "reference.h"
#include "support/guarded_memory.h"
#include "support/image.h"

namespace pxb::test {

using Converter = std::function<std::int32_t(ImageBuffer* dst, const ImageBuffer* src)>;
using Reference = std::function<void(const ImageBuffer& dst, const ImageBuffer& src)>;

// ConvertByReference for that processor.
Reference ReferenceFor(::Processor processor);

class ConversionTrial {
  public:
    ConversionTrial();

    // Images of these widths and of 0 to 5 rows: equal sizes and different ones, with and without
    // padding, in both directions, and at the front and at the back of the memory. `convert` must
    // answer 0, leave in the destination's memory, also around the image, what the reference leaves
    // there, and not write to the source. An RGB8 destination is for a channel of the source.
    testing::AssertionResult Run(FormatPair pair, const std::vector<int>& widths,
                                 const Reference& reference, const Converter& convert);

  private:
    // Where the bytes that a conversion visits lie between the inaccessible pages.
    enum class Placement {
        kFront,  // the first follows a page
        kBack,   // a page follows the last
        kSplit,  // a page follows the last byte of luma; a planar image is made taller for that
    };

    // The records come without data.
    testing::AssertionResult Compare(ImageBuffer dst, ImageBuffer src, Placement placement,
                                     const Reference& reference, const Converter& convert);
    void Place(ImageBuffer& dst, ImageBuffer& src, Placement placement) const;

    GuardedMemory dst_memory_, src_memory_;
    std::vector<std::uint8_t> background_, expected_;
    int number_ = 0;
};

}  // namespace pxb::test
