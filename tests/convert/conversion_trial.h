// Conversions between images in guarded memory, compared with the reference.
#pragma once
#include "convert/format_pairs.h"
#include "reference.h"
#include "support/trial.h"

namespace pxb::test {

// ConvertByReference for that processor.
Reference ReferenceFor(::Processor processor);

class ConversionTrial : private Trial {
  public:
    // Images of these widths and of 0 to 5 rows: equal sizes and different ones, with and without
    // padding, in both directions, and at the front and at the back of the memory. See Compare. An
    // RGB8 destination is for a channel of the source.
    testing::AssertionResult Run(FormatPair pair, const std::vector<int>& widths,
                                 const Reference& reference, const Converter& convert);

  private:
    // The records come without data; a planar image may become taller.
    void PlaceBoth(ImageBuffer& dst, ImageBuffer& src, Placement placement) const;

    int number_ = 0;
};

}  // namespace pxb::test
