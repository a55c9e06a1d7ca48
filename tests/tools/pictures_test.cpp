// What the tool adds to the library: edges of odd pictures, the choice of frames, the test card.
#include <algorithm>
#include <string>

#include "commands.h"
#include "convert.h"
#include "error.h"
#include "picture_bytes.h"
#include "scratch_folder.h"
#include "testcard.h"

namespace pxb::tool {
namespace {

// What is in memory beyond an odd picture is a copy of its last column and row, in every format.
TEST(Pictures, OddOnesRepeatTheirEdges) {
    for (const PixelFormat format : kAllFormats) {
        SCOPED_TRACE(FormatName(format));
        const Picture picture = NoisyPicture(format, {3, 3}, 1);
        for (const Plane& plane : PlanesOf(picture.image(), {4, 4})) {
            SCOPED_TRACE(plane.samples);
            const std::uint8_t* const last = picture.Row(plane, plane.rows - 1);
            const std::uint8_t* const before = picture.Row(plane, plane.rows - 2);
            const bool pairs_of_rows = plane.rows == 2;
            EXPECT_EQ(std::equal(last, last + plane.row_bytes, before), !pairs_of_rows);
            for (int i = 0; i < plane.pixel_bytes; ++i)
                EXPECT_EQ(last[3 * plane.pixel_step + i], last[2 * plane.pixel_step + i]);
        }
    }
}

Picture Cut(const Picture& from, Size size) {
    Picture part("", from.format(), size);
    for (const Plane& plane : part.Planes())
        for (const Plane& source : from.Planes())
            for (std::int64_t y = 0; y < plane.rows && source.samples == plane.samples; ++y)
                std::copy_n(from.Row(source, y), plane.row_bytes, part.Row(plane, y));
    RepeatEdges(part);
    return part;
}

// A picture of odd size looks like the even one that it was cut from, last column and row included.
TEST(Pictures, OddOnesConvertWithoutDrift) {
    const Size odd = {13, 7};
    const Picture whole = PaintTestCard({14, 8}, 0, 1), cut = Cut(whole, odd);
    for (const PixelFormat format : {PXB_RGB24, PXB_RGB32, PXB_YV12}) {
        SCOPED_TRACE(FormatName(format));
        EXPECT_EQ(Visible(Convert("", cut, format)), Visible(Cut(Convert("", whole, format), odd)));
    }
}

class Frames : public ScratchFolder {};

TEST_F(Frames, AreChosenByWhatTheOutputHolds) {
    const std::string video = Put("in.y4m", "YUV4MPEG2 W1 H1 Cmono\nFRAME\naFRAME\nbFRAME\nc");
    const struct {
        std::string out;
        std::optional<std::int64_t> frame;
        std::string pixels;
    } cases[] = {
        {"out.raw", {}, "abc"}, {"out.raw", 1, "b"}, {"out.pgm", {}, "a"}, {"out.pgm", 2, "c"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.out + " of " + c.pixels);
        ConvertFile({video, {}, c.frame}, {Path(c.out), "", {}});
        const std::string bytes = Get(c.out);
        EXPECT_EQ(bytes.substr(bytes.size() - c.pixels.size()), c.pixels);
        EXPECT_EQ(bytes.size(), c.pixels.size() + (c.out == "out.pgm" ? 11 : 0));
    }
}

TEST_F(Frames, ChannelsBecomeGreyPictures) {
    Put("in.rgb32", "BGRABGRA");
    const RawLayout layout = {Size{2, 1}, {}};
    const std::string expected[] = {"AA", "RR", "GG", "BB"};
    for (int channel = 1; channel <= 4; ++channel) {
        ExtractChannel({Path("in.rgb32"), layout, {}}, {Path("out.raw"), "", {}}, channel);
        EXPECT_EQ(Get("out.raw"), expected[channel - 1]);
    }
}

// Odd pictures as they look, save where columns or rows that change sides share chroma: there the
// edge that they repeat comes first.
TEST_F(Frames, AreMirrored) {
    const struct {
        std::string file, frame;
        Size size;
        std::optional<Rect> part;
        std::string left_to_right, upside_down;  // empty: refused
    } cases[] = {
        {"in.rgb32", "aaaabbbbccccdddd", {2, 2}, {}, "bbbbaaaaddddcccc", "ccccddddaaaabbbb"},
        {"in.rgb24", "abcABCxyzXYZ", {2, 2}, Rect{0, 1, 2, 2}, "abcABCXYZxyz", "abcABCxyzXYZ"},
        {"in.rgb8", "abcdef", {2, 3}, {}, "", "efcdab"},
        {"in.i420", "abcdefghiUVWXuvwx", {3, 3}, {}, "ccbffeiihVUXWvuxw", "ghighidefWXUVwxuv"},
        {"in.yuy2", "aubvcxdy", {4, 1}, {}, "dxcybuav", "aubvcxdy"},
        {"in.yuy2", "aubvcxdy", {2, 2}, Rect{0, 0, 1, 2}, "", "cxbvaudy"},
        {"in.yuv422", "abuv", {2, 1}, {}, "", ""},
        {"in.nv12", "abcduv", {2, 2}, {}, "", ""},
        {"in.ayuv32", "abcd", {1, 1}, {}, "", ""},
    };
    for (const auto& c : cases)
        for (const Mirror mirror : {Mirror::kHorizontal, Mirror::kVertical}) {
            const bool horizontal = mirror == Mirror::kHorizontal;
            SCOPED_TRACE(c.file + (horizontal ? " left to right" : " upside down"));
            const std::string& wanted = horizontal ? c.left_to_right : c.upside_down;
            const InputOptions from = {Put(c.file, c.frame + c.frame), {c.size, {}}, {}};
            const OutputOptions to = {Path("out.raw"), "", {}};
            if (wanted.empty()) {
                EXPECT_THROW(FlipFile(from, to, mirror, c.part), Error);
                continue;
            }
            FlipFile(from, to, mirror, c.part);
            EXPECT_EQ(Get("out.raw"), wanted + wanted);
        }
}

// Interleaved pictures turn counter-clockwise and 4:2:0 clockwise. Of the former row 0 (at 270: and
// column 0) is copied, so that at the same sizes the edge next to it is seen twice.
TEST_F(Frames, AreTurned) {
    const struct {
        std::string file, frame;
        Size size;
        int angle;
        std::optional<Size> to;
        std::string turned;  // empty: refused
    } cases[] = {
        {"in.rgb24", "abcdefghiABCDEFGHI", {3, 2}, 90, {}, "ghiGHIghiGHIdefDEF"},
        {"in.rgb24", "abcdefghiABCDEFGHI", {3, 2}, 270, {}, "ABCabcDEFDEFGHIGHI"},
        {"in.rgb24", "abcdefghiABCDEFGHI", {3, 2}, 0, {}, "abcdefghiABCDEFGHI"},
        {"in.rgb24", "abcdefghiABCDEFGHI", {3, 2}, 90, Size{2, 1}, "abcABC"},
        {"in.rgb24", "abcdefghiABCDEFGHI", {3, 2}, 90, Size{3, 3}, ""},
        {"in.rgb24", "abcdefghiABCDEFGHI", {3, 2}, 180, Size{2, 2}, ""},
        {"in.rgb32", "aaaabbbbccccdddd", {2, 2}, 720, Size{1, 1}, {"\0\0\0\0", 4}},
        {"in.i420", "abcdefghUVuv", {4, 2}, 90, {}, "eafbgchdUVuv"},
        {"in.i420", "abcdefghUVuv", {4, 2}, 180, {}, "hgfedcbaVUvu"},
        {"in.yv12", "abcdefghUVuv", {4, 2}, 270, {}, "dhcgbfaeVUvu"},
        {"in.i420", "abcdefghUVuv", {4, 2}, 90, Size{2, 2}, ""},
        {"in.i420", "abcdefghUVuv", {4, 2}, 45, {}, ""},
        {"in.i420", "abcdefghUVuv", {4, 2}, 450, {}, ""},
        {"in.rgb8", "abcd", {2, 2}, 90, {}, ""},
        {"in.yuy2", "aubv", {2, 1}, 90, {}, ""},
        {"in.nv12", "abcduv", {2, 2}, 90, {}, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file + " by " + std::to_string(c.angle));
        const InputOptions from = {Put(c.file, c.frame + c.frame), {c.size, {}}, {}};
        const OutputOptions to = {Path("out.raw"), "", {}};
        const Rotation rotation = {c.angle, c.to};
        if (c.turned.empty()) {
            EXPECT_THROW(RotateFile(from, to, rotation), Error);
            continue;
        }
        RotateFile(from, to, rotation);
        EXPECT_EQ(Get("out.raw"), c.turned + c.turned);
    }
}

TEST_F(Frames, TakeTheShapeOfTheirPixelsWithThem) {
    const std::string video = Put("in.y4m", "YUV4MPEG2 W2 H2 F25:1 A16:15 C420jpeg\nFRAME\nabcduv");
    RotateFile({video, {}, {}}, {Path("out.y4m"), "", {}}, {90, {}});
    EXPECT_NE(Get("out.y4m").find(" A15:16"), std::string::npos);
    RotateFile({video, {}, {}}, {Path("out.y4m"), "", {}}, {180, {}});
    EXPECT_NE(Get("out.y4m").find(" A16:15"), std::string::npos);
}

TEST_F(Frames, InfoSaysWhereThePlanesAre) {
    const std::string info =
        Describe({Put("in.yv12", std::string(18 + 9, 'x')), {Size{5, 3}, {}}, {}});
    for (const char* part : {"size        5 x 3\n", "format      3, YV12\n", "frames      1\n",
                             "in memory   6 x 4, stride 6", "V         at byte 24, stride 3",
                             "U         at byte 30, stride 3"})
        EXPECT_NE(info.find(part), std::string::npos) << part << "\nin\n" << info;
}

TEST(TestCard, StaysInStudioRangeAtEverySize) {
    for (const Size size : {Size{1, 1}, Size{5, 3}, Size{3, 200}, Size{200, 3}, Size{64, 48},
                            Size{97, 61}, Size{200, 150}, Size{576, 768}}) {
        SCOPED_TRACE(ToString(size));
        const Picture card = PaintTestCard(size, 0, 1);
        for (const Plane& plane : card.Planes())
            for (std::int64_t y = 0; y < plane.rows; ++y) {
                const auto [least, most] =
                    std::minmax_element(card.Row(plane, y), card.Row(plane, y) + plane.row_bytes);
                EXPECT_GE(*least, 16);
                EXPECT_LE(*most, plane.samples == "Y" ? 235 : 240);
            }
    }
}

TEST(TestCard, ShowsKnownColorsAndMoves) {
    const Picture card = PaintTestCard({768, 576}, 0, 4);
    const std::vector<Plane> planes = card.Planes();
    const auto at = [&](int x, int y) {
        return std::vector<int>{card.Row(planes[0], y)[x], card.Row(planes[1], y / 2)[x / 2],
                                card.Row(planes[2], y / 2)[x / 2]};
    };
    EXPECT_EQ(at(56, 56), (std::vector{81, 90, 240}));      // the red corner
    EXPECT_EQ(at(80, 80), (std::vector{170, 166, 16}));     // cyan inside it
    EXPECT_EQ(at(584, 60), (std::vector{16, 128, 128}));    // black, the last of the bars
    EXPECT_EQ(at(384, 288), (std::vector{235, 128, 128}));  // the middle of the zone plate

    const Picture later = PaintTestCard({768, 576}, 2, 4);
    EXPECT_EQ(later.Row(planes[0], 288)[384], 16);  // half a turn of its phase
}

}  // namespace
}  // namespace pxb::tool
