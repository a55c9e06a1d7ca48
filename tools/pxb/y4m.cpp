// YUV4MPEG2. Layouts: 4:2:0 in four chroma sitings (I420), 4:2:2 (planar YUV422), 4:4:4 (AYUV32) and
// mono (RGB8).
#include "y4m.h"

#include "error.h"
#include "numbers.h"
#include "raw.h"
#include "studio_range.h"

namespace pxb::tool {
namespace {

constexpr std::string_view kMagic = "YUV4MPEG2", kFrame = "FRAME";

struct Layout {
    std::string_view name;
    PixelFormat format;
};
constexpr Layout kLayouts[] = {
    {"420jpeg", PXB_I420}, {"420", PXB_I420},   {"420mpeg2", PXB_I420}, {"420paldv", PXB_I420},
    {"422", PXB_YUV422},   {"444", PXB_AYUV32}, {"mono", PXB_RGB8},
};

// The words after the first, which must be `first`.
std::vector<std::string> ReadParameters(InputFile& input, std::string_view first,
                                        const std::string& field) {
    const std::string line = input.ReadLine(field);
    if (!line.starts_with(first) || (line.size() > first.size() && line[first.size()] != ' '))
        throw Error(input.name(), field, line.substr(0, 40), "should be " + std::string(first));
    std::vector<std::string> words;
    for (std::size_t at = first.size(); at < line.size();) {
        const std::size_t end = std::min(line.find(' ', at + 1), line.size());
        if (end > at + 1) words.push_back(line.substr(at + 1, end - at - 1));
        at = end;
    }
    return words;
}

std::int32_t ParseExtent(const InputFile& input, const std::string& word) {
    if (const auto extent = ParseNumber(word.substr(1), 1, INT32_MAX)) return *extent;
    throw Error(input.name(), "header " + word.substr(0, 1), word.substr(1),
                "should be a number from 1 to 2147483647");
}

PixelFormat ParseLayout(const InputFile& input, const std::string& name) {
    std::string known;
    for (const Layout& layout : kLayouts) {
        if (layout.name == name) return layout.format;
        known.append(known.empty() ? "" : ", ").append(layout.name);
    }
    throw Error(input.name(), "header C", name, "is not one of " + known);
}

// Among the comments, by custom.
constexpr std::string_view kRangeName = "COLORRANGE=";
constexpr std::string_view kRanges[] = {"FULL", "LIMITED"};  // as in Range

// What the header or, in its stead, `wanted` says of the range; comments then say the same.
Range TakeRange(const InputFile& input, Video& video, std::optional<Range> wanted) {
    Range range = wanted.value_or(Range::kLimited);
    for (std::string& comment : video.comments) {
        if (!comment.starts_with(kRangeName)) continue;
        const std::string word = comment.substr(kRangeName.size());
        if (!wanted && word != kRanges[0] && word != kRanges[1])
            throw Error(input.name(), "header XCOLORRANGE", word,
                        "is not FULL or LIMITED; give --range full or --range limited");
        if (!wanted) range = word == kRanges[0] ? Range::kFull : Range::kLimited;
        // Grey pictures have all 256 values in any case, and are not converted.
        const bool stays_full = range == Range::kFull && video.format == PXB_RGB8;
        comment = std::string(kRangeName).append(kRanges[stays_full ? 0 : 1]);
    }
    return range;
}

Video ReadVideoHeader(InputFile& input) {
    Video video{PXB_I420, {0, 0}};
    for (const std::string& word : ReadParameters(input, kMagic, "header")) {
        const std::string value = word.substr(1);
        switch (word[0]) {
            case 'W':
                video.size.width = ParseExtent(input, word);
                break;
            case 'H':
                video.size.height = ParseExtent(input, word);
                break;
            case 'F':
                video.rate = value;
                break;
            case 'I':
                video.interlacing = value;
                break;
            case 'A':
                video.aspect = value;
                break;
            case 'X':
                video.comments.push_back(value);
                break;
            case 'C':
                video.format = ParseLayout(input, value);
                video.layout = value;
                break;
            default:
                throw Error(input.name(), "header", word, "is not a known parameter");
        }
    }
    if (video.size.width == 0) throw Error(input.name(), "header W", "", "is missing");
    if (video.size.height == 0) throw Error(input.name(), "header H", "", "is missing");
    return video;
}

// The name under which the input had its layout, if it had one, else the first for the format.
std::string_view LayoutName(const Video& video) {
    std::string_view name;
    for (const Layout& layout : kLayouts) {
        if (layout.format != video.format) continue;
        if (name.empty() || layout.name == video.layout) name = layout.name;
    }
    return name;
}

void WriteHeader(OutputFile& output, const Video& video) {
    std::string header(kMagic);
    const auto add = [&](char letter, std::string_view value) {
        if (!value.empty()) (header += ' ').append(1, letter).append(value);
    };
    add('W', std::to_string(video.size.width));
    add('H', std::to_string(video.size.height));
    add('F', video.rate.empty() ? "25:1" : video.rate);
    add('I', video.interlacing);
    add('A', video.aspect);
    add('C', LayoutName(video));
    for (const std::string& comment : video.comments) add('X', comment);
    output.Write(header + '\n');
}

// 4:4:4: planes Y, U and V; alpha is opaque.
Picture ReadFrame444(InputFile& input, const Video& video, std::int64_t number) {
    const std::string field = "frame " + std::to_string(number);
    input.Require(std::int64_t{3} * video.size.width * video.size.height, field);
    Picture picture(input.name(), video.format, video.size, Picture::Contents::kAny);
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(video.size.width));
    for (std::size_t plane = 1; plane <= 3; ++plane)
        for (std::int32_t y = 0; y < video.size.height; ++y) {
            input.Read(samples.data(), video.size.width, field);
            std::uint8_t* pixel = picture.Row(y);
            for (const std::uint8_t sample : samples) {
                pixel[0] = 255;
                pixel[plane] = sample;
                pixel += 4;
            }
        }
    RepeatEdges(picture);
    return picture;
}

void WriteFrame444(OutputFile& output, const Picture& picture) {
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(picture.size().width));
    for (std::size_t plane = 1; plane <= 3; ++plane)
        for (std::int32_t y = 0; y < picture.size().height; ++y) {
            for (std::size_t x = 0; x < samples.size(); ++x)
                samples[x] = picture.Row(y)[4 * x + plane];
            output.Write(samples.data(), picture.size().width);
        }
}

}  // namespace

Video ReadY4m(InputFile& input, const RawLayout& layout, const FrameSink& sink) {
    Video video = ReadVideoHeader(input);
    video.was_full_range =
        TakeRange(input, video, layout.range) == Range::kFull && video.format != PXB_RGB8;
    if (video.format == PXB_AYUV32) video.alpha = false;
    CheckSize(input.name(), video.format, video.size, layout.max_pixels);
    for (std::int64_t number = 0;; ++number) {
        std::optional<Picture> picture = NextY4mFrame(input, video, number);
        if (!picture || !sink(video, *picture, number)) return video;
    }
}

std::optional<Picture> NextY4mFrame(InputFile& input, const Video& video, std::int64_t number) {
    if (input.AtEnd()) return std::nullopt;
    ReadParameters(input, kFrame, "frame " + std::to_string(number));
    Picture picture = video.format == PXB_AYUV32 ? ReadFrame444(input, video, number)
                                                 : ReadFrame(input, video, number);
    if (video.was_full_range) ToStudioRange(picture);
    return picture;
}

void WriteY4m(OutputFile& output, const Video& video, const Picture& picture, std::int64_t number) {
    if (number == 0) WriteHeader(output, video);
    output.Write("FRAME\n");
    if (video.format == PXB_AYUV32)
        WriteFrame444(output, picture);
    else
        WriteFrame(output, picture);
}

}  // namespace pxb::tool
