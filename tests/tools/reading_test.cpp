// What readers make of files: of our own writers', and of hand-made ones with the less common parts
// of each type.
#include <string>
#include <vector>

#include "commands.h"
#include "scratch_folder.h"

namespace pxb::tool {
namespace {

constexpr bool kHasPng = PXB_TOOL_HAS_PNG;

// The visible bytes, plane after plane.
std::string Visible(const Picture& picture) {
    std::string bytes;
    for (const Plane& plane : picture.Planes())
        for (std::int64_t y = 0; y < plane.rows; ++y)
            bytes.append(reinterpret_cast<const char*>(picture.Row(plane, y)),
                         static_cast<std::size_t>(plane.row_bytes));
    return bytes;
}

Picture NoisyPicture(PixelFormat format, Size size, unsigned seed) {
    Picture picture("noise", format, size);
    for (const Plane& plane : picture.Planes())
        for (std::int64_t y = 0; y < plane.rows; ++y)
            for (std::int64_t i = 0; i < plane.row_bytes; ++i)
                picture.Row(plane, y)[i] =
                    static_cast<std::uint8_t>((seed = seed * 1664525 + 1013904223) >> 24);
    RepeatEdges(picture);
    return picture;
}

struct Frames {
    Video video;
    std::vector<std::string> pixels;  // of each frame
};

Frames ReadAll(const std::string& path, const RawLayout& layout = {}) {
    InputFile input(path);
    std::vector<std::string> pixels;
    const Video video =
        InputType(input, layout)
            .read(input, layout, [&](const Video&, const Picture& picture, std::int64_t) {
                pixels.push_back(Visible(picture));
                return true;
            });
    return {video, pixels};
}

class Reading : public ScratchFolder {};

TEST_F(Reading, EveryTypeGivesBackWhatItWrote) {
    for (const FileType& type : FileTypes())
        for (const PixelFormat format : type.formats)
            for (const Size size : {Size{1, 1}, Size{5, 3}, Size{8, 2}, Size{17, 9}}) {
                if (type.name == "png" && !kHasPng) continue;
                SCOPED_TRACE(testing::Message()
                             << type.name << " " << FormatName(format) << " " << ToString(size));
                const Video video{format, size};
                const int count = type.many_frames ? 3 : 1;
                const std::string path = Path("file." + std::string(type.name));
                std::vector<std::string> pixels;
                OutputFile output(path);
                for (int number = 0; number < count; ++number) {
                    const Picture picture = NoisyPicture(format, size, 1 + number);
                    pixels.push_back(Visible(picture));
                    type.write(output, video, picture, number);
                }
                output.Commit();

                RawLayout layout;
                if (type.name == "raw") layout = {size, format};
                const Frames read = ReadAll(path, layout);
                EXPECT_EQ(read.video.format, format);
                EXPECT_EQ(ToString(read.video.size), ToString(size));
                EXPECT_EQ(read.pixels, pixels);
            }
}

TEST_F(Reading, PnmTakesCommentsAndAnyMaxval) {
    const struct {
        const char* name;
        std::string bytes, pixels;
    } cases[] = {
        {"comments", "P2 # a\n#b\n 2#c\n2\n15 0 15\n#d\n5\n3", std::string("\0\377\125\063", 4)},
        {"color", "P3\n1 1 255\n10 20 30\n", "\x1e\x14\x0a"},
        {"binary after one space", std::string("P6 1 1 127 \0\x40\x7f", 14),
         std::string("\xff\x81\0", 3)},
        {"16 bits", std::string("P5\n3 1\n65535\n\0\0\x80\0\xff\xff", 19),
         std::string("\0\x80\xff", 3)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ReadAll(Put("file", c.bytes)).pixels, std::vector{c.pixels});
    }
}

// A picture of 2 x 2 pixels with the given parts of the header.
std::string Bmp(int height, int bits, int compression, const std::string& palette_or_masks,
                const std::string& rows) {
    const auto number = [](int value) {
        std::string bytes;
        for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> 8 * i);
        return bytes;
    };
    const int offset = 54 + static_cast<int>(palette_or_masks.size()) + 2;  // and two unused bytes
    return "BM" + number(0) + number(0) + number(offset) + number(40) + number(2) + number(height) +
           number(1 | bits << 16) + number(compression) + number(0) + number(0) + number(0) +
           number(bits == 8 ? static_cast<int>(palette_or_masks.size() / 4) : 0) + number(0) +
           palette_or_masks + "??" + rows;
}

TEST_F(Reading, BmpInBothDirectionsAndWithPalettes) {
    const std::string masks("\0\0\xff\0\0\xff\0\0\xff\0\0\0", 12);
    const struct {
        const char* name;
        std::string bytes;
        PixelFormat format;
        std::string pixels;
    } cases[] = {
        {"bottom row first", Bmp(2, 24, 0, "", "abcdef..ABCDEF.."), PXB_RGB24, "ABCDEFabcdef"},
        {"top row first", Bmp(-2, 24, 0, "", "abcdef..ABCDEF.."), PXB_RGB24, "abcdefABCDEF"},
        {"masks", Bmp(-2, 32, 3, masks, "abcdefghABCDEFGH"), PXB_RGB32, "abcdefghABCDEFGH"},
        {"grey palette", Bmp(-2, 8, 0, "aaa.xxx.", std::string("\1\0..\0\1..", 8)), PXB_RGB8,
         "xaax"},
        {"palette", Bmp(-2, 8, 0, "abc.xyz.", std::string("\1\0..\0\1..", 8)), PXB_RGB24,
         "xyzabcabcxyz"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Frames frames = ReadAll(Put("file", c.bytes));
        EXPECT_EQ(frames.video.format, c.format);
        EXPECT_EQ(frames.pixels, std::vector{c.pixels});
    }
}

TEST_F(Reading, Y4mKeepsItsParametersThroughACopy) {
    const std::string header = "YUV4MPEG2 W3 H1 F30000:1001 It A10:11 C420paldv XONE=1 XTWO\n";
    Put("in.y4m", header + "FRAME Ip\nabcu1v2FRAME\nABCU1V2");
    ConvertFile({Path("in.y4m"), {}, {}}, {Path("out.y4m"), "", {}});
    EXPECT_EQ(Get("out.y4m"), header + "FRAME\nabcu1v2FRAME\nABCU1V2");
}

TEST_F(Reading, Y4mLayouts) {
    const struct {
        std::string layout;  // with the space before it
        PixelFormat format;
        std::string frame;  // 3 x 1
    } cases[] = {
        {"", PXB_I420, "abcu1v2"},        {" C420jpeg", PXB_I420, "abcu1v2"},
        {" C420", PXB_I420, "abcu1v2"},   {" C420mpeg2", PXB_I420, "abcu1v2"},
        {" C422", PXB_YUV422, "abcu1v2"}, {" Cmono", PXB_RGB8, "abc"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.layout);
        const Frames frames =
            ReadAll(Put("file", "YUV4MPEG2 H1 W3" + c.layout + "\nFRAME\n" + c.frame));
        EXPECT_EQ(frames.video.format, c.format);
        EXPECT_EQ(frames.pixels, std::vector{c.frame});
    }
}

std::string FromHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

TEST_F(Reading, PngIsExpandedTo8Bits) {
    if (!kHasPng) GTEST_SKIP() << "built without PNG";
    const struct {
        const char* name;
        std::string_view hex;  // the file
        PixelFormat format;
        std::string_view pixels;  // in hex, too
    } cases[] = {
        {"2-bit palette",
         "89504e470d0a1a0a0000000d4948445200000003000000010203000000668efc2700000009504c5445ff00000"
         "0"
         "ff000000ff2d4acd8a0000000a4944415478da63900000001a001980008ebb0000000049454e44ae426082",
         PXB_RGB24, "0000ff00ff00ff0000"},
        {"16-bit grey, 12ff and 8000",
         "89504e470d0a1a0a0000000d494844520000000200000001100000000081d9fc150000000d4944415478da631"
         "0"
         "fadfc00000044a01921f9ea3180000000049454e44ae426082",
         PXB_RGB8, "1380"},
        {"1-bit grey",
         "89504e470d0a1a0a0000000d4948445200000003000000010100000000339b29190000000a4944415478da635"
         "8"
         "000000a200a17105cb410000000049454e44ae426082",
         PXB_RGB8, "ff00ff"},
        {"grey with alpha",
         "89504e470d0a1a0a0000000d4948445200000001000000010804000000b51c0c020000000b4944415478da63f"
         "0"
         "6d0000011d00cec081ae8b0000000049454e44ae426082",
         PXB_RGB32, "4d4d4d80"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Frames frames = ReadAll(Put("file", FromHex(c.hex)));
        EXPECT_EQ(frames.video.format, c.format);
        EXPECT_EQ(frames.pixels, std::vector{FromHex(c.pixels)});
    }
}

TEST_F(Reading, Rgb32WithoutAlphaMakesAnOpaquePng) {
    if (!kHasPng) GTEST_SKIP() << "built without PNG";
    Put("in.rgb32", std::string("abc\0def\0", 8));
    ConvertFile({Path("in.rgb32"), {Size{2, 1}, {}}, {}}, {Path("out.png"), "", {}});
    const Frames frames = ReadAll(Path("out.png"));
    EXPECT_EQ(frames.video.format, PXB_RGB24);
    EXPECT_EQ(frames.pixels, std::vector<std::string>{"abcdef"});
}

}  // namespace
}  // namespace pxb::tool
