// `pxb resize`: frames of videos, parts of pictures, and what it says where it cannot.
#include <string>

#include "commands.h"
#include "picture_bytes.h"
#include "scratch_folder.h"

namespace pxb::tool {
namespace {

class Resizing : public ScratchFolder {
  protected:
    std::string ResultOf(const std::string& in, const Scaling& scaling,
                         const RawLayout& layout = {}) const {
        return MessageOf([&] { ResizeFile({in, layout, {}}, {Path("out.raw"), "", {}}, scaling); });
    }
};

TEST_F(Resizing, EveryFrameOfAVideoInEveryMode) {
    const std::string video =
        Put("in.y4m", "YUV4MPEG2 W2 H2 F25:1 A1:1 Cmono\nFRAME\nabcdFRAME\nefgh");
    ResizeFile({video, {}, {}}, {Path("out.y4m"), "", {}}, {{4, 2}, 0, {}, {}});
    EXPECT_EQ(Get("out.y4m"), "YUV4MPEG2 W4 H2 F25:1 A0:0 Cmono\nFRAME\naabbccddFRAME\neeffgghh");
    ResizeFile({video, {}, {}}, {Path("out.y4m"), "", {}}, {{4, 4}, 0, {}, {}});
    EXPECT_EQ(Get("out.y4m").substr(0, 33), "YUV4MPEG2 W4 H4 F25:1 A1:1 Cmono\n");

    const char* const names[] = {"nearest",    "bilinear",   "faded", "half",
                                 "half-faded", "bilinear-5", "shrink"};
    for (std::int32_t mode = 0; mode <= 6; ++mode) {
        EXPECT_EQ(ParseMode("--mode", names[mode]), mode);
        EXPECT_EQ(ParseMode("--mode", std::to_string(mode)), mode);
        EXPECT_EQ(ResultOf(video, {{3, 3}, mode, {}, {}}), "no error");
        EXPECT_EQ(Get("out.raw").size(), 18u);
    }
}

// The last column and row of an odd 4:2:0 picture have chroma, too.
TEST_F(Resizing, OddPicturesScaleAsAWhole) {
    Put("in.i420", "abcabcabcuuuuvvvv");
    const RawLayout layout = {Size{3, 3}, {}};
    EXPECT_EQ(ResultOf(Path("in.i420"), {{3, 3}, 0, {}, {}}, layout), "no error");
    EXPECT_EQ(Get("out.raw"), "abcabcabcuuuuvvvv");
    EXPECT_EQ(ResultOf(Path("in.i420"), {{3, 3}, 0, Rect{1, 0, 3, 3}, Rect{0, 0, 2, 3}}, layout),
              "no error");
    EXPECT_EQ(Get("out.raw").substr(0, 9),
              "bc\x10"
              "bc\x10"
              "bc\x10");
}

TEST_F(Resizing, PartsGoToPartsAndTheRestIsBlack) {
    const std::string grey = Put("in.pgm", "P5 4 2 255 abcdefgh");
    EXPECT_EQ(ResultOf(grey, {{3, 3}, 0, Rect{1, 0, 3, 2}, Rect{1, 1, 3, 3}}), "no error");
    EXPECT_EQ(Get("out.raw"), std::string("\0\0\0\0bc\0fg", 9));
}

TEST_F(Resizing, RefusesWhatCannotBe) {
    const std::string grey = Put("in.pgm", "P5 4 2 255 abcdefgh"),
                      color = Put("in.ppm", "P6 1 2 255 abcdef"), planar = Put("in.yuv422", "abuv"),
                      nv12 = Put("in.nv12", "abcduv"),
                      wide = Put("wide.ppm", "P6 2 2 255 abcdefghijkl");
    const Scaling plain = {{3, 3}, 1, {}, {}};
    const struct {
        std::string in;
        Scaling scaling;
        RawLayout layout;
        std::string message;  // its beginning
    } cases[] = {
        {grey, {{3, 3}, 1, Rect{1, 0, 5, 2}, {}}, {}, grey + ": --from-rect: 1,0,5,2: is L,T,R,B"},
        {grey, {{3, 3}, 1, {}, Rect{0, 0, 3, 4}}, {}, Path("out.raw") + ": --to-rect: 0,0,3,4: is"},
        {grey, {{3, 3}, 1, Rect{1, 1, 1, 2}, {}}, {}, grey + ": --mode: 1 (bilinear): the library"},
        {grey, {{65536, 65536}, 1, {}, {}}, {}, grey + ": size: 65536x65536 RGB8"},
        {color, {{2, 4}, 6, Rect{0, 0, 1, 2}, {}}, {}, "no error"},  // one column is always nearest
        {planar,
         plain,
         {Size{2, 1}, {}},
         planar + ": resize: YUV422: the library answers 1 (PXB_UNSUPPORTED); convert to YUY2"},
        {nv12,
         plain,
         {Size{2, 2}, {}},
         nv12 + ": resize: NV12: the library answers 2 (PXB_BAD_ARGUMENT); convert to RGB32"},
        {wide,
         {{3, 3}, 6, {}, {}},
         {},
         wide + ": --mode: 6 (shrink): the library writes nothing in this mode from 2x2 to 3x3 in "
                "RGB24"},
        {nv12, plain, {{}, {}, "--in-size"}, nv12 + ": --in-size: raw frames need --in-size WxH"},
    };
    for (const auto& c : cases) {
        const std::string message = ResultOf(c.in, c.scaling, c.layout);
        EXPECT_EQ(message.substr(0, c.message.size()), c.message);
        std::filesystem::remove(Path("out.raw"));
        EXPECT_EQ(FileCount(), 5u);
    }
    EXPECT_THROW(ParseMode("--mode", "7"), Error);
    EXPECT_THROW(ParseMode("--mode", "cubic"), Error);
}

}  // namespace
}  // namespace pxb::tool
