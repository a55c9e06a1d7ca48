// Bad files, bad requests and bad places to write to: one line that names the file, the field and
// the value, and nothing left behind.
#include <string>

#include "commands.h"
#include "geometry.h"
#include "scratch_folder.h"

namespace pxb::tool {
namespace {

class Refusals : public ScratchFolder {};

TEST_F(Refusals, FilesThatLieOrEndEarly) {
    const std::string png(
        "\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\x75\x30\0\0\x4e\x20\x08\x02\0\0\0\x40\xf7\x9c\xde"
        "\0\0\0\x0cIDAT",
        41);
    const std::string bmp("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\2\0\0\0\2\0\0\0\1\0\x18\0", 30);
    const bool has_png = FindFileType("png") != nullptr;
    const std::string no_compression(24, '\0');
    const auto runs = [&](const std::string& pairs) {
        std::string header = bmp + std::string(24, '\0') + std::string(1024, 'x');
        header[11] = 4, header[28] = 8, header[30] = 1;
        return header + pairs;
    };
    const struct {
        std::string name, bytes, field_and_value;
        RawLayout layout = {};
    } cases[] = {
        {"empty.y4m", "", "is empty"},
        {"a.y4m", "YUV4MPEG3 W4 H4\n", "header: YUV4MPEG3 W4 H4: should be"},
        {"a.y4m", "YUV4MPEG2 W4\n", "header H"},
        {"a.y4m", "YUV4MPEG2 W0 H4\n", "header W: 0"},
        {"a.y4m", "YUV4MPEG2 W4 H99999999999\n", "header H: 99999999999"},
        {"a.y4m", "YUV4MPEG2 W2147483647 H2147483647\n", "size: 2147483647x2147483647 I420"},
        {"a.y4m", "YUV4MPEG2 W4 H4 C420p10\n", "header C: 420p10"},
        {"a.y4m", "YUV4MPEG2 W4 H4\nFRAME\nabc", "frame 0: 24 bytes: the file has only 3"},
        {"a.y4m", "YUV4MPEG2 W1 H1\nFRAME\nabcd", "frame 1: d"},
        {"a.y4m", "YUV4MPEG2 W1 H1\n", "frame: 0: the file has 0 frames"},
        {"a.pgm", "P5 2 0 255 abc", "height: 0"},
        {"a.pgm", "P5 2 2 70000 abc", "maxval: 70000"},
        {"a.pgm", "P5 1 1 100 \xc8", "row 0: 200: is above the maxval of 100"},
        {"a.pgm", "P8 2 2 \xc0\xc0", "header: P8"},
        {"a.pbm", "P1 2 2 1 0", "pixels: 4 bytes"},
        {"a.pbm", "P1 2 2 1 0 2 1", "row 1: 2: should be 0 or 1"},
        {"a.pam", "P7\nWIDTH 2\nHEIGHT 2\nMAXVAL 9\nENDHDR\n", "header DEPTH: is missing"},
        {"a.pam", "P7\nDEPTH 5\n", "header DEPTH: 5: should be"},
        {"a.pam", "P7\nDEPTH 3\nTUPLTYPE CMY\nWIDTH 1\nHEIGHT 1\nMAXVAL 9\nENDHDR\nabc",
         "header TUPLTYPE: CMY"},
        {"a.pgm", "P2 2 1 9 5 10", "row 0: 10"},
        {"a.pgm", "P2 2 1 9 5 x", "row 0: x"},
        {"a.pgm", "P2 1 1 9 00000000000000009 ", "row 0: 00000000000000009...: is too long"},
        {"a.pgm", "P2 16384 16384 9 5 ", "pixels: 268435456 bytes"},
        {"a.ppm", "P6 16384 16385 255 ", "size: 16384x16385 RGB24: more pixels than --max-pixels"},
        {"a.y4m", "YUV4MPEG2 W4 H4 XCOLORRANGE=WIDE\n", "header XCOLORRANGE: WIDE: is not"},
        {"a.pgm", "P5 2 2 9 abcd", "--range: is for Y4M", {{}, {}, "", Range::kFull}},
        {"a.bmp", "BM", "header: 2 bytes"},
        {"a.bmp", bmp + std::string("\1\0\0\0", 4) + no_compression, "compression: 1"},
        {"a.bmp", runs(std::string("\2\1\1\1\0\1", 6)), "row 0: 3 pixels: the width is 2"},
        {"a.bmp", runs(std::string("\0\2\3\0\0\1", 6)), "row 0: 3 pixels: the width is 2"},
        {"a.bmp", runs(std::string("\2\1\0", 3)), "row 0: 1 bytes: the file ends"},
        {"a.bmp", bmp.substr(0, 28) + std::string("\2\0", 2) + no_compression, "bits a pixel: 2"},
        {"a.bmp", bmp.substr(0, 10) + std::string(4, '\0') + bmp.substr(14) + no_compression,
         "pixel offset: 0"},
        {"a.bmp", bmp.substr(0, 14) + "\x0c" + bmp.substr(15) + no_compression, "header size: 12"},
        {"a.nv12", "123456", "--size"},
        {"a.raw", "123456", "--format", {Size{2, 2}, {}}},
        {"a.nv12",
         "1234567",
         "file size: 7 bytes: not a whole number of frames of 3",
         {Size{1, 1}, {}}},
        {"a.nv12", "", "is empty", {Size{2, 2}, {}}},
        {"a.nv12", "1", "size: 2147483647x2 NV12", {Size{2147483647, 2}, {}}},
        {"a.png", "no picture", has_png ? "PNG data" : "file type: unknown"},
        {"a.png",
         png,
         has_png ? "PNG data: 1744186 bytes" : "file type: unknown",
         {{}, {}, "", {}, INT64_MAX}},
        {"a.y4m", "YUV4MPEG2 W1 H1\nFRAME\nabc", "--size", {Size{2, 2}, {}}},
        {"unknown", "what is this?", "file type: unknown"},
        {"unknown", "", "is empty"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name + " with " + c.field_and_value);
        const std::string in = Put(c.name, c.bytes);
        const std::string message = MessageOf([&] {
            ConvertFile({in, c.layout, {}}, {Path("out.raw"), "", {}});
        });
        EXPECT_EQ(message.find(in + ": " + c.field_and_value), 0u) << message;
        std::filesystem::remove(in);
        EXPECT_EQ(FileCount(), 0u);
    }
}

TEST_F(Refusals, RequestsThatCannotBeMet) {
    const std::string grey = Put("grey.pgm", "P5 1 1 255 a");
    const std::string planar = Put("planar.yuv422", "abcu1v2");
    const RawLayout three = {Size{3, 1}, {}};
    const struct {
        InputOptions from;
        OutputOptions to;
        std::string message;  // a part of it
    } cases[] = {
        {{grey, {}, {}}, {Path("out.y4m"), "", PXB_I420}, "grey.pgm: conversion: RGB8 to I420"},
        {{planar, three, {}},
         {Path("out.rgb32"), "", {}},
         "YUV422 to RGB32: the library answers 2 (PXB_BAD_ARGUMENT); convert to "},
        {{planar, three, {}}, {Path("out.nv12"), "", {}}, "convert to YUY2, then to RGB32 first"},
        {{planar, three, {}}, {Path("out.pgm"), "", {}}, "`pxb channel` makes grey pictures"},
        {{planar, three, 1}, {Path("out.yuv"), "", {}}, "frame: 1: the file has 1 frame"},
        {{grey, {}, {}}, {Path("out.ppm"), "", PXB_YUY2}, "--to: YUY2: a PPM picture holds RGB24"},
        {{grey, {}, {}}, {Path("out.xyz"), "", {}}, "out.xyz: file type: xyz"},
        {{grey, {}, {}}, {Path("out.pgm"), "gif", {}}, "--type: gif"},
        {{grey, {}, {}}, {"-", "", {}}, "standard output: file type: unknown"},
        {{Path("absent.pgm"), {}, {}}, {Path("out.pgm"), "", {}}, "absent.pgm: open: No such file"},
        {{grey, {}, {}}, {Path("absent/out.pgm"), "", {}}, "out.pgm: open: No such file"},
        {{Path(""), {}, {}}, {Path("out.pgm"), "", {}}, "is a directory"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.message);
        const std::string message = MessageOf([&] { ConvertFile(c.from, c.to); });
        EXPECT_NE(message.find(c.message), std::string::npos) << message;
        EXPECT_EQ(FileCount(), 2u);
    }
    const struct {
        int number;
        const char *out, *message;
    } channels[] = {
        {1, "out.bmp",
         "channel: 1 of RGB8: the library answers 1 (PXB_UNSUPPORTED); convert to RGB24, then to "
         "RGB32 first"},
        {5, "out.bmp", "channel: 5 of RGB8: this format"},
        {1, "out.ppm", "channel: RGB8: a PPM picture holds RGB24"},
    };
    for (const auto& c : channels) {
        const std::string message = MessageOf([&] {
            ExtractChannel({grey, {}, {}}, {Path(c.out), "", {}}, c.number);
        });
        EXPECT_NE(message.find(c.message), std::string::npos) << message;
        EXPECT_EQ(FileCount(), 2u);
    }
}

TEST(Geometry, SizesAndRectanglesAreReadAndChecked) {
    const Rect rect = ParseRect("--rect", "1,2,30,2147483647");
    EXPECT_EQ(ToString(rect), "1,2,30,2147483647");
    EXPECT_EQ((std::vector{rect.left, rect.top, rect.right, rect.bottom}),
              (std::vector{1, 2, 30, 2147483647}));
    EXPECT_EQ(ToString(ParseSize("--size", "7X1")), "7x1");
    for (const char* text :
         {"", "1,2,3", "1,2,3,", "1,2,3,4,5", "1,2,3,-4", "1,2,3,2147483648", "1,2,,3", "a,2,3,4"})
        EXPECT_EQ(MessageOf([&] { ParseRect("--rect", text); }).find("--rect: "), 0u) << text;
    EXPECT_EQ(ToString(ParsePoint("--at", "7,0")), "7,0");
    for (const char* text : {"", "7", "7,", ",7", "7,8,9", "-1,0"})
        EXPECT_EQ(MessageOf([&] { ParsePoint("--at", text); }).find("--at: "), 0u) << text;
    for (const char* text : {"", "7", "x7", "7x", "0x1", "1x-1", "7x7x7"})
        EXPECT_EQ(MessageOf([&] { ParseSize("--size", text); }).find("--size: "), 0u) << text;

    const Size size = {8, 6};
    for (const Rect inside : {Rect{0, 0, 8, 6}, Rect{8, 6, 8, 6}, Rect{3, 2, 3, 5}})
        EXPECT_NO_THROW(CheckRect("a.bmp", "--rect", inside, size)) << ToString(inside);
    for (const Rect outside :
         {Rect{0, 0, 9, 6}, Rect{0, 0, 8, 7}, Rect{4, 0, 3, 6}, Rect{0, 4, 8, 3}})
        EXPECT_EQ(MessageOf([&] {
                      CheckRect("a.bmp", "--rect", outside, size);
                  }).find("a.bmp: --rect: " + ToString(outside) + ": is L,T,R,B"),
                  0u);
}

TEST_F(Refusals, AFileMayReplaceItself) {
    const std::string path = Put("old.pgm", "P2 2 1 15 15 0");
    ConvertFile({path, {}, {}}, {path, "", {}});
    EXPECT_EQ(Get("old.pgm"), std::string("P5\n2 1\n255\n\xff\0", 13));
    EXPECT_EQ(FileCount(), 1u);
}

}  // namespace
}  // namespace pxb::tool
