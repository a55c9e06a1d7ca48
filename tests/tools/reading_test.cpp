// What readers make of hand-made files with the less common parts of each type.
#include <string>
#include <vector>

#include "commands.h"
#include "picture_bytes.h"
#include "scratch_folder.h"

namespace pxb::tool {
namespace {

struct VideoFrames {
    Video video;
    std::vector<std::string> pixels;  // of each frame
};

VideoFrames ReadAll(const std::string& path, const RawLayout& layout = {}) {
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

std::string FromHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

// A picture of 2 x 2 pixels with the given parts of the header.
std::string Bmp(int height, int bits, int compression, const std::string& palette_or_masks,
                const std::string& rows) {
    const int colors = bits <= 8 ? static_cast<int>(palette_or_masks.size() / 4) : 0;
    const int offset = 54 + static_cast<int>(palette_or_masks.size()) + 2;  // and two unused bytes
    std::string bytes = "BM";
    for (const int field :
         {0, 0, offset, 40, 2, height, 1 | bits << 16, compression, 0, 0, 0, colors, 0})
        for (int i = 0; i < 4; ++i) bytes += static_cast<char>(field >> 8 * i);
    return bytes + palette_or_masks + "??" + rows;
}

TEST_F(Reading, UncommonPartsOfEachType) {
    const std::string masks("\0\0\xff\0\0\xff\0\0\xff\0\0\0", 12);
    const std::string y4m = "YUV4MPEG2 H1 W3", frame = "\nFRAME\nabcu1v2";
    const std::string png = "89504e470d0a1a0a0000000d49484452", end = "0000000049454e44ae426082";
    const struct {
        const char* name;
        std::string bytes;
        PixelFormat format;
        std::string pixels;
    } cases[] = {
        {"PNM with comments", "P2 # a\n#b\n 2#c\n2\n15 0 15\n#d\n5\n3", PXB_RGB8,
         std::string("\0\377\125\063", 4)},
        {"PNM in color", "P3\n1 1 255\n10 20 30\n", PXB_RGB24, "\x1e\x14\x0a"},
        {"binary PNM after one space", std::string("P6 1 1 127 \0\x40\x7f", 14), PXB_RGB24,
         std::string("\xff\x81\0", 3)},
        {"PNM of 16 bits", std::string("P5\n3 1\n65535\n\0\0\x80\0\xff\xff", 19), PXB_RGB8,
         std::string("\0\x80\xff", 3)},
        {"PBM as text", "P1 3 2 1#\n01\n1 00", PXB_RGB8, std::string("\0\xff\0\0\xff\xff", 6)},
        {"PBM of 9 pixels", "P4 9 1 \x55\xff", PXB_RGB8, FromHex("ff00ff00ff00ff0000")},
        {"PAM of grey with alpha",
         "P7\n#\nDEPTH 2\nWIDTH 1\nHEIGHT 1\nMAXVAL 51\nTUPLTYPE GRAYSCALE_ALPHA\nENDHDR\n\1\2",
         PXB_RGB32, "\5\5\5\xa"},
        {"PAM without a type",
         std::string("P7\nWIDTH 1\nHEIGHT 1\nDEPTH 3\nMAXVAL 256\nENDHDR\n\1\0\0\x80\0\0", 52),
         PXB_RGB24, std::string("\0\x80\xff", 3)},
        {"BMP, bottom row first", Bmp(2, 24, 0, "", "abcdef..ABCDEF.."), PXB_RGB24, "ABCDEFabcdef"},
        {"BMP, top row first", Bmp(-2, 24, 0, "", "abcdef..ABCDEF.."), PXB_RGB24, "abcdefABCDEF"},
        {"BMP with masks", Bmp(-2, 32, 3, masks, "abcdefghABCDEFGH"), PXB_RGB32,
         "abcdefghABCDEFGH"},
        {"BMP with a grey palette", Bmp(-2, 8, 0, "aaa.xxx.", std::string("\1\0..\0\1..", 8)),
         PXB_RGB8, "xaax"},
        {"BMP with a palette", Bmp(-2, 8, 0, "abc.xyz.", std::string("\1\0..\0\1..", 8)), PXB_RGB24,
         "xyzabcabcxyz"},
        {"BMP of 1 bit", Bmp(-2, 1, 0, "aaa.xxx.", "\x40...\xc0..."), PXB_RGB8, "axxx"},
        {"BMP of 4 bits", Bmp(-2, 4, 0, "aaa.xxx.", std::string("\1...\x10...", 8)), PXB_RGB8,
         "axxa"},
        {"BMP of 555 bits", Bmp(-2, 16, 0, "", FromHex("01002000ffff0004")), PXB_RGB24,
         FromHex("080000000800ffffff000008")},
        {"BMP of 565 bits",
         Bmp(-2, 16, 3, FromHex("00f80000e00700001f000000"), FromHex("01002000ffff0008")),
         PXB_RGB24, FromHex("080000000400ffffff000008")},
        {"BMP of runs",
         Bmp(2, 8, 1, "aaa.xxx.",
             FromHex("000201000101"
                     "0000"
                     "0201"
                     "0001")),
         PXB_RGB8, "xxax"},
        {"BMP of runs of 4 bits", Bmp(2, 4, 2, "aaa.xxx.", FromHex("020100000001")), PXB_RGB8,
         "aaax"},
        {"Y4M without a layout", y4m + frame, PXB_I420, "abcu1v2"},
        {"Y4M 420jpeg", y4m + " C420jpeg" + frame, PXB_I420, "abcu1v2"},
        {"Y4M 420", y4m + " C420" + frame, PXB_I420, "abcu1v2"},
        {"Y4M 420mpeg2", y4m + " C420mpeg2" + frame, PXB_I420, "abcu1v2"},
        {"Y4M 422", y4m + " C422" + frame, PXB_YUV422, "abcu1v2"},
        {"Y4M 444", y4m + " C444\nFRAME\nabcuvwxyz", PXB_AYUV32,
         "\xff"
         "aux\xff"
         "bvy\xff"
         "cwz"},
        {"Y4M mono", y4m + " Cmono\nFRAME\nabc", PXB_RGB8, "abc"},
        {"PNG with a 2-bit palette",
         FromHex(png +
                 "00000003000000010203000000668efc2700000009504c5445ff000000ff000000ff2d4a"
                 "cd8a0000000a4944415478da63900000001a001980008ebb" +
                 end),
         PXB_RGB24, FromHex("0000ff00ff00ff0000")},
        {"PNG of 16-bit grey, 12ff and 8000",
         FromHex(png +
                 "0000000200000001100000000081d9fc150000000d4944415478da6310fadfc00000044a"
                 "01921f9ea318" +
                 end),
         PXB_RGB8, FromHex("1380")},
        {"PNG of 1-bit grey",
         FromHex(png +
                 "00000003000000010100000000339b29190000000a4944415478da6358000000a200a171"
                 "05cb41" +
                 end),
         PXB_RGB8, FromHex("ff00ff")},
        {"PNG of grey with alpha",
         FromHex(png +
                 "00000001000000010804000000b51c0c020000000b4944415478da63f06d0000011d00ce"
                 "c081ae8b" +
                 end),
         PXB_RGB32, FromHex("4d4d4d80")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.bytes.starts_with("\x89PNG") && !FindFileType("png")) continue;
        const VideoFrames frames = ReadAll(Put("file", c.bytes));
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

// 219 / 255 and 224 / 255 of what lies above black and round grey.
TEST_F(Reading, Y4mOfFullRangeComesInStudioRange) {
    const auto y4m = [](const std::string& parameters, const std::string& samples) {
        return "YUV4MPEG2 W2 H2 F25:1" + parameters + "\nFRAME\n" + samples;
    };
    const std::string full = FromHex("0080ff0100ff"), limited = FromHex("107eeb1110f0");
    const struct {
        std::string header, written;
        std::optional<Range> range;
        std::string samples;
    } cases[] = {
        {" C420 XCOLORRANGE=FULL", " C420 XCOLORRANGE=LIMITED", {}, limited},
        {" C420 XA XCOLORRANGE=FULL", " C420 XA XCOLORRANGE=LIMITED", Range::kLimited, full},
        {" C420 XCOLORRANGE=LIMITED", " C420 XCOLORRANGE=LIMITED", {}, full},
        {" C420 XCOLORRANGE=ODD", " C420 XCOLORRANGE=LIMITED", Range::kFull, limited},
        {" C420", " C420", Range::kFull, limited},
        {" Cmono XCOLORRANGE=FULL", " Cmono XCOLORRANGE=FULL", {}, "\x01\x80\x90\xff"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.header);
        const std::string samples = c.header.starts_with(" Cmono") ? c.samples : full;
        ConvertFile({Put("in.y4m", y4m(c.header, samples)), {{}, {}, "", c.range}, {}},
                    {Path("out.y4m"), "", {}});
        EXPECT_EQ(Get("out.y4m"), y4m(c.written, c.samples));
        const bool converted = samples != c.samples;
        EXPECT_EQ(Describe({Path("in.y4m"), {{}, {}, "", c.range}, {}}).find("range full") !=
                      std::string::npos,
                  converted);
    }
}

// Alpha that hides everything is alpha, through every type that has it; without alpha in the file
// zeros hide nothing.
TEST_F(Reading, AlphaIsWhatTheFileSays) {
    const auto convert = [&](const std::string& from, const std::string& to) {
        RawLayout layout;
        if (from == "in.rgb32") layout.size = {2, 1};
        ConvertFile({Path(from), layout, {}}, {Path(to), "", {}});
        return ReadAll(Path(to));
    };
    const std::string clear("abc\0def\0", 8);
    Put("in.rgb32", clear);
    const Picture picture = [&] {
        Picture made("", PXB_RGB32, {2, 1});
        std::copy(clear.begin(), clear.end(), made.Row(0));
        return made;
    }();
    Video video{PXB_RGB32, {2, 1}};
    video.alpha = true;
    for (const FileType& type : FileTypes()) {
        if (!type.Holds(PXB_RGB32) || type.name == "raw" || type.name == "jpeg") continue;
        SCOPED_TRACE(type.name);
        const std::string name = "." + std::string(type.name);
        OutputFile output(Path("clear" + name));
        type.write(output, video, picture, 0);
        output.Commit();
        for (const VideoFrames& back :
             {convert("clear" + name, "copy" + name), ReadAll(Path("clear" + name))}) {
            EXPECT_EQ(back.video.alpha, true);
            EXPECT_EQ(back.pixels, std::vector{clear});
        }
        const VideoFrames opaque = convert("in.rgb32", "out" + name);
        EXPECT_FALSE(opaque.video.alpha.value_or(false));
        EXPECT_EQ(opaque.pixels[0].substr(0, 3), "abc");
    }
}

}  // namespace
}  // namespace pxb::tool
