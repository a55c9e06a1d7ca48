// BMP: 14 bytes of file header, 40 or more of picture header, a palette, and rows from the bottom
// up (a negative height: from the top down), each padded to a multiple of 4 bytes.
#include "bmp.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "bmp_runs.h"
#include "error.h"

namespace pxb::tool {
namespace {

constexpr std::int64_t kHeaderBytes = 54, kMaxHeaderBytes = 14 + 256, kMaskBytes = 12;
constexpr std::int64_t kAlphaMaskEnd = 70;  // where the header is long enough
constexpr std::uint32_t kUncompressed = 0, kRuns8 = 1, kRuns4 = 2, kBitFields = 3;

using Color = std::array<std::uint8_t, 4>;  // B G R and a byte that means nothing

// What the file begins with; fields are found by their offset in the file.
class Fields {
  public:
    explicit Fields(InputFile& input) : input_(input) { ReadUpTo(kHeaderBytes); }

    void ReadUpTo(std::int64_t end) {
        const std::int64_t begin = size();
        if (end <= begin) return;
        bytes_.resize(static_cast<std::size_t>(end));
        input_.Read(bytes_.data() + begin, end - begin, "header");
    }
    std::int64_t size() const { return static_cast<std::int64_t>(bytes_.size()); }
    int U16(std::size_t at) const { return bytes_[at] | bytes_[at + 1] << 8; }
    std::uint32_t U32(std::size_t at) const {
        return static_cast<std::uint32_t>(U16(at)) | static_cast<std::uint32_t>(U16(at + 2)) << 16;
    }
    std::int32_t I32(std::size_t at) const { return static_cast<std::int32_t>(U32(at)); }

    [[noreturn]] void Refuse(std::string_view field, std::int64_t value,
                             std::string_view why) const {
        throw Error(input_.name(), field, std::to_string(value), why);
    }

  private:
    InputFile& input_;
    std::vector<std::uint8_t> bytes_;
};

// Where the channels of a pixel are that has them in bits.
struct Masks {
    std::uint32_t red, green, blue;

    bool operator==(const Masks&) const = default;
};
constexpr Masks k555 = {0x7c00, 0x3e0, 0x1f}, k565 = {0xf800, 0x7e0, 0x1f},
                k888 = {0xff0000, 0xff00, 0xff};
constexpr std::uint32_t kAlphaMask = 0xff000000;

struct BmpHeader {
    Size size;
    bool top_down;
    int bits;
    std::uint32_t compression, pixel_offset, colors;
    Masks masks;
    std::optional<bool> alpha;

    bool Runs() const { return compression == kRuns8 || compression == kRuns4; }
};

std::int64_t PaddedRowBytes(Size size, int bits) {
    return (std::int64_t{size.width} * bits + 31) / 32 * 4;
}

// Three masks lie inside the longer kinds of header and right behind the shortest.
void ReadMasks(Fields& fields, std::int64_t header_bytes, BmpHeader& header) {
    fields.ReadUpTo(kHeaderBytes + kMaskBytes);
    header.masks = {fields.U32(54), fields.U32(58), fields.U32(62)};
    const bool known =
        header.bits == 32 ? header.masks == k888 : header.masks == k555 || header.masks == k565;
    if (!known)
        fields.Refuse("red mask", header.masks.red,
                      "only pixels stored as B G R X, or by 5 5 5 or 5 6 5 bits are read");
    header.alpha =
        header.bits == 32 && 14 + header_bytes >= kAlphaMaskEnd && fields.U32(66) == kAlphaMask;
}

// Leaves the input behind the headers.
BmpHeader ReadBmpHeader(Fields& fields) {
    if (fields.U16(0) != ('B' | 'M' << 8)) fields.Refuse("magic", fields.U16(0), "is not BM");
    const std::int64_t header_bytes = fields.U32(14);
    if (header_bytes < 40 || 14 + header_bytes > kMaxHeaderBytes)
        fields.Refuse("header size", header_bytes, "is not that of a known kind");
    fields.ReadUpTo(14 + header_bytes);

    const std::int32_t height = fields.I32(22);
    if (height == INT32_MIN) fields.Refuse("height", height, "is impossible");
    BmpHeader header{};
    header.size = {fields.I32(18), height < 0 ? -height : height};
    header.top_down = height < 0;
    header.bits = fields.U16(28);
    header.compression = fields.U32(30);
    header.pixel_offset = fields.U32(10);
    header.colors = fields.U32(46);
    header.masks = k555;
    const int bits = header.bits;
    if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32)
        fields.Refuse("bits a pixel", bits, "only 1, 4, 8, 16, 24 and 32 are read");
    if (header.compression == kBitFields && (bits == 16 || bits == 32))
        ReadMasks(fields, header_bytes, header);
    else if (header.compression != kUncompressed &&
             header.compression != (bits == 8   ? kRuns8
                                    : bits == 4 ? kRuns4
                                                : kUncompressed))
        fields.Refuse("compression", header.compression,
                      "is not one of pixels of " + std::to_string(bits) + " bits");
    if (header.Runs() && header.top_down)
        fields.Refuse("height", height, "is below 0, which runs of pixels do not allow");
    return header;
}

std::vector<Color> ReadPalette(InputFile& input, const Fields& fields, const BmpHeader& header) {
    if (header.bits > 8) return {};
    const std::uint32_t most = 1u << header.bits;
    if (header.colors > most)
        fields.Refuse("palette size", header.colors, "is above " + std::to_string(most));
    std::vector<Color> palette(header.colors == 0 ? most : header.colors);
    for (Color& color : palette) input.Read(color.data(), sizeof(Color), "palette");
    return palette;
}

PixelFormat FormatOf(const BmpHeader& header, const std::vector<Color>& palette) {
    if (header.bits == 32) return PXB_RGB32;
    const bool grey = header.bits <= 8 && std::ranges::all_of(palette, [](const Color& color) {
                          return color[0] == color[1] && color[1] == color[2];
                      });
    return grey ? PXB_RGB8 : PXB_RGB24;
}

// Indices of fewer than 8 bits, the first in the highest ones.
void UnpackIndices(const std::uint8_t* from, int bits, std::vector<std::uint8_t>& indices) {
    for (std::size_t x = 0; x < indices.size(); ++x) {
        const std::size_t bit = x * static_cast<std::size_t>(bits);
        const int shift = 8 - bits - static_cast<int>(bit % 8);
        indices[x] = static_cast<std::uint8_t>(from[bit / 8] >> shift & ((1 << bits) - 1));
    }
}

void StoreIndexed(std::uint8_t* row, const std::uint8_t* indices, const Picture& picture,
                  const std::vector<Color>& palette, const Fields& fields) {
    const std::size_t bytes = picture.format() == PXB_RGB8 ? 1 : 3;
    for (std::int32_t x = 0; x < picture.size().width; ++x) {
        if (indices[x] >= palette.size())
            fields.Refuse("pixel", indices[x], "is no color of the palette");
        std::memcpy(row + bytes * static_cast<std::size_t>(x), palette[indices[x]].data(), bytes);
    }
}

// A channel of 5 or 6 bits as one of 8. Readers of such files differ by 1; truncation is the custom of
// most.
std::uint8_t Channel(std::uint32_t pixel, std::uint32_t mask) {
    const int shift = std::countr_zero(mask);
    const std::uint32_t most = mask >> shift;
    return static_cast<std::uint8_t>(((pixel & mask) >> shift) * 255 / most);
}

void StoreMasked(std::uint8_t* row, const std::uint8_t* pixels, std::int32_t width,
                 const Masks& masks) {
    for (std::int32_t x = 0; x < width; ++x) {
        const std::uint32_t pixel = pixels[2 * x] | pixels[2 * x + 1] << 8;
        row[3 * x] = Channel(pixel, masks.blue);
        row[3 * x + 1] = Channel(pixel, masks.green);
        row[3 * x + 2] = Channel(pixel, masks.red);
    }
}

// From the position of the pixels on.
void ReadRows(InputFile& input, const Fields& fields, const BmpHeader& header,
              const std::vector<Color>& palette, Picture& picture) {
    const std::int64_t row_bytes = PaddedRowBytes(header.size, header.bits);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(row_bytes));
    std::vector<std::uint8_t> indices(header.bits < 8 ? static_cast<std::size_t>(header.size.width)
                                                      : 0);
    for (std::int32_t i = 0; i < header.size.height; ++i) {
        input.Read(bytes.data(), row_bytes, "row " + std::to_string(i));
        std::uint8_t* const row = picture.Row(header.top_down ? i : header.size.height - 1 - i);
        if (header.bits < 8) UnpackIndices(bytes.data(), header.bits, indices);
        if (!palette.empty())
            StoreIndexed(row, header.bits < 8 ? indices.data() : bytes.data(), picture, palette,
                         fields);
        else if (header.bits == 16)
            StoreMasked(row, bytes.data(), header.size.width, header.masks);
        else
            std::memcpy(
                row, bytes.data(),
                static_cast<std::size_t>(FrameBytes(picture.format(), {header.size.width, 1})));
    }
}

void AppendNumber(std::string& text, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> 8 * i & 0xff);
}

std::string GreyPalette() {
    std::string palette;
    for (std::uint32_t grey = 0; grey < 256; ++grey) AppendNumber(palette, grey * 0x010101, 4);
    return palette;
}

// With alpha it is the first kind of header that has a mask for it, of 108 bytes.
std::string HeaderOf(const Picture& picture, std::string_view palette, bool alpha) {
    const int bits = picture.image().bitsPerPixel;
    const auto width = static_cast<std::uint32_t>(picture.size().width);
    const auto height = static_cast<std::uint32_t>(picture.size().height);
    const auto pixel_bytes =
        static_cast<std::uint32_t>(PaddedRowBytes(picture.size(), bits) * picture.size().height);
    const std::uint32_t header_bytes = alpha ? 108 : 40;
    const auto offset = static_cast<std::uint32_t>(14 + header_bytes + palette.size());
    const struct {
        std::uint32_t value;
        int bytes;
    } fields[] = {
        // clang-format off
        {'B' | 'M' << 8, 2}, {offset + pixel_bytes, 4}, {0, 4}, {offset, 4},
        {header_bytes, 4}, {width, 4}, {height, 4}, {1, 2}, {static_cast<std::uint32_t>(bits), 2},
        {alpha ? kBitFields : kUncompressed, 4}, {pixel_bytes, 4}, {2835, 4}, {2835, 4},  // 72 pixels an inch
        {palette.empty() ? 0u : 256u, 4}, {0, 4},
        // clang-format on
    };
    std::string header;
    for (const auto& field : fields) AppendNumber(header, field.value, field.bytes);
    if (alpha) {
        for (const std::uint32_t mask : {k888.red, k888.green, k888.blue, kAlphaMask})
            AppendNumber(header, mask, 4);
        header += "BGRs";  // the color space sRGB, whose measures are then 0
        header.append(48, '\0');
    }
    return header;
}

}  // namespace

Video ReadBmp(InputFile& input, const RawLayout& layout, const FrameSink& sink) {
    Fields fields(input);
    const BmpHeader header = ReadBmpHeader(fields);
    const std::vector<Color> palette = ReadPalette(input, fields, header);
    const PixelFormat format = FormatOf(header, palette);
    CheckSize(input.name(), format, header.size, layout.max_pixels);
    const std::int64_t position =
        fields.size() + static_cast<std::int64_t>(palette.size() * sizeof(Color));
    if (header.pixel_offset < position)
        fields.Refuse("pixel offset", header.pixel_offset, "lies inside the header");
    const std::int64_t gap = header.pixel_offset - position;
    if (!header.Runs())
        input.Require(gap + PaddedRowBytes(header.size, header.bits) * header.size.height,
                      "pixels");
    input.Skip(gap, "pixel offset");
    std::vector<std::uint8_t> runs;
    if (header.Runs()) runs = ReadBmpRuns(input, header.size, header.bits);

    Picture picture(input.name(), format, header.size);
    if (!header.Runs()) ReadRows(input, fields, header, palette, picture);
    for (std::size_t i = 0; i < runs.size(); i += header.size.width)
        StoreIndexed(picture.Row(header.size.height - 1 - i / header.size.width), &runs[i], picture,
                     palette, fields);
    RepeatEdges(picture);
    Video video{format, header.size};
    video.alpha = header.alpha;
    sink(video, picture, 0);
    return video;
}

void WriteBmp(OutputFile& output, const Video& video, const Picture& picture, std::int64_t) {
    const std::string palette = video.format == PXB_RGB8 ? GreyPalette() : "";
    const bool alpha = video.format == PXB_RGB32 && video.alpha.value_or(false);
    output.Write(HeaderOf(picture, palette, alpha) + palette);
    const std::int64_t row_bytes = FrameBytes(video.format, {video.size.width, 1});
    const std::int64_t padding =
        PaddedRowBytes(video.size, picture.image().bitsPerPixel) - row_bytes;
    for (std::int32_t y = video.size.height; y-- > 0;) {
        output.Write(picture.Row(y), row_bytes);
        output.Write("\0\0\0", padding);
    }
}

}  // namespace pxb::tool
