// `pxb blend`: which alpha it takes, where the overlay goes, and what it refuses.
#include "commands.h"
#include "scratch_folder.h"

namespace pxb::tool {
namespace {

class BlendCommand : public ScratchFolder {
  protected:
    // Two pixels of white, B G R and alpha: one seen, one not.
    std::string PutLogo() {
        Put("logo.rgb32", std::string("\xff\xff\xff\xff\xff\xff\xff\0", 8));
        ConvertFile({Path("logo.rgb32"), {Size{2, 1}, {}}, {}}, {Path("logo.bmp"), "", {}});
        return Path("logo.bmp");
    }
    std::string PutGrey(const std::string& name, Size size, char level) {
        return Put(name, "P5 " + std::to_string(size.width) + " " + std::to_string(size.height) +
                             " 255 " + std::string(size.width * size.height, level));
    }
    std::string PutColor(Size size, char level) {
        return Put("color.ppm", "P6 " + std::to_string(size.width) + " " +
                                    std::to_string(size.height) + " 255 " +
                                    std::string(3 * size.width * size.height, level));
    }
};

// By the mask for RGB24, and for RGB32 by the fourth bytes themselves.
TEST_F(BlendCommand, LaysALogoOverEveryFrame) {
    const std::string logo = PutLogo();
    for (const std::string bytes : {"...", "...x"}) {
        const std::string name = bytes.size() == 3 ? ".rgb24" : ".rgb32";
        std::string frames;
        for (int i = 0; i < 2 * 6; ++i) frames += bytes;
        Put("in" + name, frames);
        BlendOver({Path("in" + name), {Size{3, 2}, {}}, {}}, {logo, "", {1, 1}, {}},
                  {Path("out" + name), "", {}});
        for (const std::size_t pixel : {4u, 6u + 4u})
            frames.replace(pixel * bytes.size(), 3, "\xfe\xfe\xfe");
        EXPECT_EQ(Get("out" + name), frames);
    }
}

// Grey 128 is a luma of 126; a block of chroma lies at half of its first pixel's coordinates.
TEST_F(BlendCommand, TakesAPartThroughAMask) {
    const std::string frame(24, 16);
    BlendOver(
        {Put("in.i420", frame), {Size{4, 4}, {}}, {}},
        {PutColor({3, 3}, '\x80'), PutGrey("mask.pgm", {3, 3}, '\x80'), {1, 0}, Rect{1, 1, 3, 3}},
        {Path("out.i420"), "", {}});
    std::string expected = frame;
    for (const int luma : {1, 2, 5, 6}) expected[luma] = 71;
    expected[16] = expected[20] = 72;
    EXPECT_EQ(Get("out.i420"), expected);
}

TEST_F(BlendCommand, RefusesWhatCannotBeMet) {
    const std::string logo = PutLogo(), color = PutColor({2, 2}, 1);
    const std::string grey = PutGrey("grey.pgm", {2, 2}, 1), small = PutGrey("s.pgm", {1, 2}, 1);
    const std::string in = Put("in.rgb24", std::string(12, 1)), nv12 = Put("in.nv12", "012345"),
                      yuy2 = Put("in.yuy2", std::string(16, 1));
    const struct {
        std::string background;
        OverlayOptions overlay;
        std::string message;
        Size size = {2, 2};
    } cases[] = {
        {in, {color, "", {}, {}}, color + ": format: RGB24: has no alpha"},
        {in, {color, color, {}, {}}, color + ": format: RGB24: should be a grey picture"},
        {in, {color, small, {}, {}}, small + ": size: 1x2: should be that of the overlay, 2x2"},
        {in, {color, grey, {}, Rect{0, 0, 3, 2}}, color + ": --from-rect: 0,0,3,2: is L,T,R,B"},
        {in, {color, grey, {1, 0}, {}}, in + ": --at: 1,0: 2x2 pixels from there"},
        {in, {color, grey, {0, 2147483647}, {}}, in + ": --at: 0,2147483647: 2x2 pixels"},
        {in, {grey, grey, {}, {}}, "no error"},
        {nv12, {logo, "", {}, {}}, nv12 + ": format: NV12: the library blends"},
        {yuy2, {logo, "", {1, 0}, {}}, yuy2 + ": --at: 1,0: U and V", {4, 2}},
        {yuy2, {grey, grey, {}, {}}, grey + ": conversion: RGB8 to YUY2", {4, 2}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.message);
        const std::string message = MessageOf([&] {
            BlendOver({c.background, {c.size, {}}, {}}, c.overlay, {Path("out.ppm"), "", {}});
        });
        EXPECT_EQ(message.substr(0, c.message.size()), c.message);
    }
}

}  // namespace
}  // namespace pxb::tool
