// PAM: lines of a name and a value, ENDHDR, and tuples of samples as in binary PNM files.
#include "pam.h"

#include "error.h"
#include "netpbm.h"
#include "numbers.h"

namespace pxb::tool {
namespace {

struct PamHeader {
    Size size = {0, 0};
    std::int32_t depth = 0, max_value = 0;
    std::string tuple_type;
};

constexpr std::string_view kTupleTypes[] = {"GRAYSCALE", "GRAYSCALE_ALPHA", "RGB", "RGB_ALPHA"};

// Black and white is grey with a maxval of 1. Files may leave the type out; the depth tells it.
void CheckTupleType(const InputFile& input, const PamHeader& header) {
    std::string type = header.tuple_type;
    if (type.starts_with("BLACKANDWHITE")) type.replace(0, 13, "GRAYSCALE");
    if (type.empty() || type == kTupleTypes[header.depth - 1]) return;
    throw Error(input.name(), "header TUPLTYPE", header.tuple_type,
                "is no type of " + std::to_string(header.depth) + " samples that is read");
}

PamHeader ReadPamHeader(InputFile& input) {
    PamHeader header;
    if (const std::string magic = input.ReadLine("header"); magic != "P7")
        throw Error(input.name(), "header", magic.substr(0, 40), "is not P7");
    const struct {
        std::string_view name;
        std::int32_t* value;
        std::int32_t most;
    } numbers[] = {{"WIDTH", &header.size.width, INT32_MAX},
                   {"HEIGHT", &header.size.height, INT32_MAX},
                   {"DEPTH", &header.depth, 4},
                   {"MAXVAL", &header.max_value, 65535}};
    for (std::string line; (line = input.ReadLine("header")) != "ENDHDR";) {
        if (line.empty() || line[0] == '#') continue;
        const std::string name = line.substr(0, line.find(' '));
        const std::string value = line.substr(std::min(line.size(), name.size() + 1));
        bool known = name == "TUPLTYPE";
        if (known) header.tuple_type = value;
        for (const auto& number : numbers) {
            if (number.name != name) continue;
            known = true;
            const auto parsed = ParseNumber(value, 1, number.most);
            if (!parsed)
                throw Error(input.name(), "header " + name, value,
                            "should be a number from 1 to " + std::to_string(number.most));
            *number.value = *parsed;
        }
        if (!known) throw Error(input.name(), "header", line.substr(0, 40), "is not known");
    }
    for (const auto& number : numbers)
        if (*number.value == 0)
            throw Error(input.name(), "header " + std::string(number.name), "", "is missing");
    CheckTupleType(input, header);
    return header;
}

void StorePamRow(std::uint8_t* row, const PamHeader& header,
                 const std::vector<std::uint8_t>& samples) {
    const auto depth = static_cast<std::size_t>(header.depth);
    const bool color = depth > 2, alpha = depth % 2 == 0;
    const std::size_t bytes = depth == 1 ? 1 : alpha ? 4 : 3;
    for (std::size_t x = 0; x < samples.size() / depth; ++x) {
        const std::uint8_t* const from = &samples[depth * x];
        std::uint8_t* const to = row + bytes * x;
        for (std::size_t c = 0; c < std::min<std::size_t>(bytes, 3); ++c)
            to[c] = from[color ? 2 - c : 0];
        if (alpha) to[3] = from[depth - 1];
    }
}

}  // namespace

Video ReadPam(InputFile& input, const RawLayout& layout, const FrameSink& sink) {
    const PamHeader header = ReadPamHeader(input);
    const bool alpha = header.depth % 2 == 0;
    Video video{alpha ? PXB_RGB32 : header.depth == 1 ? PXB_RGB8 : PXB_RGB24, header.size};
    video.alpha = alpha;
    CheckSize(input.name(), video.format, header.size, layout.max_pixels);
    SampleRows rows(input, std::int64_t{header.size.width} * header.depth, header.max_value);
    rows.Require(header.size.height);
    Picture picture(input.name(), video.format, header.size);
    for (std::int32_t y = 0; y < header.size.height; ++y)
        StorePamRow(picture.Row(y), header, rows.Next());
    RepeatEdges(picture);
    sink(video, picture, 0);
    return video;
}

void WritePam(OutputFile& output, const Video& video, const Picture& picture, std::int64_t) {
    const int stored = picture.image().bitsPerPixel / 8;
    const int depth = stored == 4 && !HasAlpha(video, picture) ? 3 : stored;
    output.Write("P7\nWIDTH " + std::to_string(video.size.width) + "\nHEIGHT " +
                 std::to_string(video.size.height) + "\nDEPTH " + std::to_string(depth) +
                 "\nMAXVAL 255\nTUPLTYPE " + std::string(kTupleTypes[depth - 1]) + "\nENDHDR\n");
    std::vector<std::uint8_t> row(static_cast<std::size_t>(video.size.width) * depth);
    for (std::int32_t y = 0; y < video.size.height; ++y) {
        const std::uint8_t* from = picture.Row(y);
        for (std::size_t i = 0; i < row.size(); i += depth, from += stored)
            for (int c = 0; c < depth; ++c) row[i + c] = from[depth == 1 || c == 3 ? c : 2 - c];
        output.Write(row.data(), static_cast<std::int64_t>(row.size()));
    }
}

}  // namespace pxb::tool
