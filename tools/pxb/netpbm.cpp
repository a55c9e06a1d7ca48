#include "netpbm.h"

#include <cctype>

#include "error.h"
#include "numbers.h"

namespace pxb::tool {
namespace {

constexpr std::size_t kMaxWord = 16;

}  // namespace

bool IsNetpbmSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

std::string ReadNetpbmWord(InputFile& input, std::string_view field) {
    std::string word;
    for (std::optional<char> c = input.Get(); c; c = input.Get()) {
        if (c == '#')
            while (c && c != '\n') c = input.Get();
        if (c && !IsNetpbmSpace(*c))
            word += *c;
        else if (!word.empty())
            break;
        if (word.size() > kMaxWord) throw Error(input.name(), field, word + "...", "is too long");
    }
    return word;
}

std::int32_t ReadNetpbmNumber(InputFile& input, std::string_view field, std::int32_t least,
                              std::int32_t most) {
    const std::string word = ReadNetpbmWord(input, field);
    if (const auto number = ParseNumber(word, least, most)) return *number;
    throw Error(input.name(), field, word.empty() ? "missing" : word,
                "should be a number from " + std::to_string(least) + " to " + std::to_string(most));
}

SampleRows::SampleRows(InputFile& input, std::int64_t row_samples, std::int32_t max_value)
    : input_(input), row_samples_(row_samples), max_value_(max_value) {}

void SampleRows::Require(std::int32_t rows) {
    const std::int64_t row_bytes = row_samples_ * (max_value_ > 255 ? 2 : 1);
    input_.Require(row_bytes * rows, "pixels");
    bytes_.resize(static_cast<std::size_t>(row_bytes));
    samples_.resize(static_cast<std::size_t>(row_samples_));
}

const std::vector<std::uint8_t>& SampleRows::Next() {
    const std::string field = "row " + std::to_string(row_++);
    input_.Read(bytes_.data(), static_cast<std::int64_t>(bytes_.size()), field);
    const bool wide = max_value_ > 255;
    for (std::size_t i = 0; i < samples_.size(); ++i) {
        const std::int32_t sample = wide ? bytes_[2 * i] << 8 | bytes_[2 * i + 1] : bytes_[i];
        if (sample > max_value_)
            throw Error(input_.name(), field, std::to_string(sample),
                        "is above the maxval of " + std::to_string(max_value_));
        samples_[i] = ScaleSample(sample, max_value_);
    }
    return samples_;
}

}  // namespace pxb::tool
