// PNM: P1 to P3 hold samples as text, P4 to P6 as bytes; black and white, grey, and red, green, blue.
// Samples are scaled from 0..maxval to 0..255; of several pictures in a file the first counts.
#include "pnm.h"

#include "error.h"
#include "netpbm.h"

namespace pxb::tool {
namespace {

struct PnmHeader {
    bool text, bits, color;
    Size size;
    std::int32_t max_value;
};

PnmHeader ReadPnmHeader(InputFile& input) {
    const std::string magic = ReadNetpbmWord(input, "header");
    if (magic < "P1" || magic > "P6" || magic.size() != 2)
        throw Error(input.name(), "header", magic, "is not one of P1 to P6");
    const int kind = (magic[1] - '1') % 3;
    PnmHeader header{};
    header.text = magic < "P4";
    header.bits = kind == 0;
    header.color = kind == 2;
    header.size.width = ReadNetpbmNumber(input, "width", 1, INT32_MAX);
    header.size.height = ReadNetpbmNumber(input, "height", 1, INT32_MAX);
    header.max_value = header.bits ? 1 : ReadNetpbmNumber(input, "maxval", 1, 65535);
    return header;
}

// Bits of text need no space between them. 1 is black.
std::uint8_t ReadBit(InputFile& input, std::string_view field) {
    std::optional<char> c = input.Get();
    for (; c && (c == '#' || IsNetpbmSpace(*c)); c = input.Get())
        if (c == '#')
            while (c && c != '\n') c = input.Get();
    if (c == '0') return 255;
    if (c == '1') return 0;
    throw Error(input.name(), field, c ? std::string(1, *c) : "missing", "should be 0 or 1");
}

void ReadText(InputFile& input, const PnmHeader& header, std::string_view field,
              std::vector<std::uint8_t>& samples) {
    for (std::uint8_t& sample : samples)
        sample = header.bits ? ReadBit(input, field)
                             : ScaleSample(ReadNetpbmNumber(input, field, 0, header.max_value),
                                           header.max_value);
}

// Eight pixels a byte, the first in the highest bit.
void UnpackBits(const std::vector<std::uint8_t>& bytes, std::vector<std::uint8_t>& samples) {
    for (std::size_t x = 0; x < samples.size(); ++x)
        samples[x] = (bytes[x / 8] << x % 8 & 0x80) != 0 ? 0 : 255;
}

void StorePnmRow(std::uint8_t* row, const PnmHeader& header,
                 const std::vector<std::uint8_t>& samples) {
    const std::size_t channels = header.color ? 3 : 1;
    for (std::size_t i = 0; i < samples.size(); i += channels)
        for (std::size_t c = 0; c < channels; ++c) row[i + c] = samples[i + channels - 1 - c];
}

}  // namespace

Video ReadPnm(InputFile& input, const RawLayout& layout, const FrameSink& sink) {
    const PnmHeader header = ReadPnmHeader(input);
    const PixelFormat format = header.color ? PXB_RGB24 : PXB_RGB8;
    const Size size = header.size;
    CheckSize(input.name(), format, size, layout.max_pixels);
    const std::int64_t row_samples = std::int64_t{size.width} * (header.color ? 3 : 1);
    const bool packed = header.bits && !header.text;
    SampleRows rows(input, packed ? (row_samples + 7) / 8 : row_samples,
                    packed ? 255 : header.max_value);
    if (header.text)
        input.Require(row_samples * size.height, "pixels");  // at least a digit for each
    else
        rows.Require(size.height);

    Picture picture(input.name(), format, size);
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(row_samples));
    for (std::int32_t y = 0; y < size.height; ++y) {
        if (header.text) ReadText(input, header, "row " + std::to_string(y), samples);
        if (packed) UnpackBits(rows.Next(), samples);
        StorePnmRow(picture.Row(y), header, header.text || packed ? samples : rows.Next());
    }
    RepeatEdges(picture);
    const Video video{format, size};
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
