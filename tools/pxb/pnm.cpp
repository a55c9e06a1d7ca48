// PNM. Samples are scaled from 0..maxval to 0..255; of several pictures in a file the first counts.
#include "pnm.h"

#include <cctype>

#include "error.h"
#include "numbers.h"

namespace pxb::tool {
namespace {

constexpr std::size_t kMaxWord = 16;

struct Header {
    bool ascii, color;
    Size size;
    std::int32_t max_value;

    int SampleBytes() const { return max_value > 255 ? 2 : 1; }
    std::int64_t RowSamples() const { return std::int64_t{size.width} * (color ? 3 : 1); }
};

bool IsSpace(std::optional<char> c) {
    return c && std::isspace(static_cast<unsigned char>(*c));
}

// The next word of the header or of ASCII samples, with the one space character that ends it.
// Comments run from # to the end of the line.
std::string ReadWord(InputFile& input, std::string_view field) {
    std::string word;
    for (std::optional<char> c = input.Get(); c; c = input.Get()) {
        if (c == '#')
            while (c && c != '\n') c = input.Get();
        if (c && !IsSpace(c))
            word += *c;
        else if (!word.empty())
            break;
        if (word.size() > kMaxWord) throw Error(input.name(), field, word + "...", "is too long");
    }
    return word;
}

std::int32_t ReadNumber(InputFile& input, std::string_view field, std::int32_t least,
                        std::int32_t most) {
    const std::string word = ReadWord(input, field);
    if (const auto number = ParseNumber(word, least, most)) return *number;
    throw Error(input.name(), field, word.empty() ? "missing" : word,
                "should be a number from " + std::to_string(least) + " to " + std::to_string(most));
}

Header ReadHeader(InputFile& input) {
    const std::string magic = ReadWord(input, "header");
    if (magic != "P2" && magic != "P3" && magic != "P5" && magic != "P6")
        throw Error(input.name(), "header", magic, "is not P2, P3, P5 or P6");
    Header header{};
    header.ascii = magic < "P4";
    header.color = magic == "P3" || magic == "P6";
    header.size.width = ReadNumber(input, "width", 1, INT32_MAX);
    header.size.height = ReadNumber(input, "height", 1, INT32_MAX);
    header.max_value = ReadNumber(input, "maxval", 1, 65535);
    return header;
}

// One row as samples of 0..max_value.
void ReadSamples(InputFile& input, const Header& header, std::string_view field,
                 std::vector<std::uint8_t>& bytes, std::vector<std::int32_t>& samples) {
    if (header.ascii) {
        for (std::int32_t& sample : samples) sample = ReadNumber(input, field, 0, header.max_value);
        return;
    }
    input.Read(bytes.data(), static_cast<std::int64_t>(bytes.size()), field);
    const bool wide = header.SampleBytes() == 2;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = wide ? bytes[2 * i] << 8 | bytes[2 * i + 1] : bytes[i];
        if (samples[i] > header.max_value)
            throw Error(input.name(), field, std::to_string(samples[i]),
                        "is above the maxval of " + std::to_string(header.max_value));
    }
}

void StoreRow(std::uint8_t* row, const Header& header, const std::vector<std::int32_t>& samples) {
    const auto scaled = [&](std::size_t i) {
        return static_cast<std::uint8_t>((samples[i] * 255 + header.max_value / 2) /
                                         header.max_value);
    };
    const std::size_t channels = header.color ? 3 : 1;
    for (std::size_t i = 0; i < samples.size(); i += channels)
        for (std::size_t c = 0; c < channels; ++c) row[i + c] = scaled(i + channels - 1 - c);
}

}  // namespace

Video ReadPnm(InputFile& input, const RawLayout& layout, const FrameSink& sink) {
    const Header header = ReadHeader(input);
    const PixelFormat format = header.color ? PXB_RGB24 : PXB_RGB8;
    CheckSize(input.name(), format, header.size, layout.max_pixels);
    const std::int64_t row_bytes =
        header.ascii ? header.RowSamples() : header.RowSamples() * header.SampleBytes();
    input.Require(row_bytes * header.size.height, "pixels");

    Picture picture(input.name(), format, header.size);
    std::vector<std::uint8_t> bytes(header.ascii ? 0 : static_cast<std::size_t>(row_bytes));
    std::vector<std::int32_t> samples(static_cast<std::size_t>(header.RowSamples()));
    for (std::int32_t y = 0; y < header.size.height; ++y) {
        ReadSamples(input, header, "row " + std::to_string(y), bytes, samples);
        StoreRow(picture.Row(y), header, samples);
    }
    RepeatEdges(picture);
    const Video video{format, header.size};
    sink(video, picture, 0);
    return video;
}

void WritePnm(OutputFile& output, const Video& video, const Picture& picture, std::int64_t) {
    const bool color = video.format == PXB_RGB24;
    output.Write((color ? "P6\n" : "P5\n") + std::to_string(video.size.width) + " " +
                 std::to_string(video.size.height) + "\n255\n");
    std::vector<std::uint8_t> row(
        static_cast<std::size_t>(FrameBytes(video.format, {video.size.width, 1})));
    for (std::int32_t y = 0; y < video.size.height; ++y) {
        const std::uint8_t* const pixels = picture.Row(y);
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = pixels[color ? i / 3 * 3 + 2 - i % 3 : i];
        output.Write(row.data(), static_cast<std::int64_t>(row.size()));
    }
}

}  // namespace pxb::tool
