// Words and samples, which PNM and PAM files write alike.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "input_file.h"

namespace pxb::tool {

bool IsNetpbmSpace(char c);

// The next word, with the one space character that ends it. Comments run from # to the end of the
// line.
std::string ReadNetpbmWord(InputFile& input, std::string_view field);
std::int32_t ReadNetpbmNumber(InputFile& input, std::string_view field, std::int32_t least,
                              std::int32_t most);

// A sample of 0 to `max_value` as one of 0 to 255, rounded to nearest.
inline std::uint8_t ScaleSample(std::int32_t sample, std::int32_t max_value) {
    return static_cast<std::uint8_t>((sample * 255 + max_value / 2) / max_value);
}

// Rows of binary samples, of two bytes each, the higher first, where 255 is not enough.
class SampleRows {
  public:
    SampleRows(InputFile& input, std::int64_t row_samples, std::int32_t max_value);

    // Makes sure that so many rows follow, before it takes memory for one.
    void Require(std::int32_t rows);

    // The next row, scaled to 0 to 255.
    const std::vector<std::uint8_t>& Next();

  private:
    InputFile& input_;
    std::int64_t row_samples_;
    std::int32_t max_value_, row_ = 0;
    std::vector<std::uint8_t> bytes_, samples_;
};

}  // namespace pxb::tool
