// Frames one after the other: by several threads, in memory that served before, and in series of files.
#include <functional>
#include <random>

#include "commands.h"
#include "convert.h"
#include "error.h"
#include "frame_loop.h"
#include "progress.h"
#include "scratch_folder.h"

namespace pxb::tool {
namespace {

class Videos : public ScratchFolder {
  protected:
    std::string PutNoise(const std::string& name, std::int64_t bytes) {
        std::string noise(static_cast<std::size_t>(bytes), '\0');
        std::mt19937 random(7);
        for (char& c : noise) c = static_cast<char>(random() >> 24);
        return Put(name, noise);
    }
    std::string PutCard(const std::string& name, int frames) {
        PaintTestCards({Path(name), "", {}}, {66, 50}, frames);
        return Path(name);
    }
};

constexpr std::size_t kFrameBytes = 66 * 50 * 3 / 2;  // of a frame of PutCard

struct Verb {
    std::string name;
    std::function<void(const InputOptions&, const OutputOptions&)> run;
};

// The bad frame is the fifth of nine, where several threads are under way with others.
TEST_F(Videos, SameBytesAndMessagesFromAnyNumberOfThreads) {
    const std::string card = PutCard("card.y4m", 9), logo = Put("logo.ppm", "P6 1 1 255 abc"),
                      mask = Put("mask.pgm", "P5 1 1 255 z"), out = Path("out.y4m");
    const Verb verbs[] = {
        {"convert", ConvertFile},
        {"channel", [](auto& from, auto& to) { ExtractChannel(from, to, 5); }},
        {"resize",
         [](auto& from, auto& to) {
             ResizeFile(from, to, {{30, 20}, 1, {}, {}});
         }},
        {"rotate",
         [](auto& from, auto& to) {
             RotateFile(from, to, {90, {}});
         }},
        {"flip", [](auto& from, auto& to) { FlipFile(from, to, Mirror::kHorizontal, {}); }},
        {"blend",
         [&](auto& from, auto& to) {
             BlendOver(from, {logo, mask, {2, 2}, {}}, to);
         }},
    };
    for (const Verb& verb : verbs) {
        SCOPED_TRACE(verb.name);
        verb.run({card, {}, {}, 1}, {out, "", {}});
        const std::string expected = Get("out.y4m");
        std::string bad = Get("card.y4m");
        bad[bad.rfind("FRAME", bad.size() - 5 * kFrameBytes)] = 'f';
        Put("bad.y4m", bad);
        const std::string message = MessageOf([&] {
            verb.run({Path("bad.y4m"), {}, {}, 1}, {out, "", {}});
        });
        EXPECT_NE(message.find("bad.y4m: frame 4: "), std::string::npos) << message;
        for (const int threads : {2, 5}) {
            verb.run({card, {}, {}, threads}, {out, "", {}});
            EXPECT_TRUE(Get("out.y4m") == expected);
            EXPECT_EQ(MessageOf([&] {
                          verb.run({Path("bad.y4m"), {}, {}, threads}, {out, "", {}});
                      }),
                      message);
            EXPECT_TRUE(Get("out.y4m") == expected);
        }
    }
    EXPECT_EQ(FileCount(), 5u);
}

TEST_F(Videos, WorkThatFailsEndsWithTheFirstFailure) {
    const std::string card = PutCard("card.y4m", 9);
    for (const int threads : {1, 4}) {
        FrameWriter writer({Path("out.y4m"), "", {}});
        EXPECT_EQ(MessageOf([&] {
                      WalkFrames({card, {}, {}, threads}, writer, [](Frame& frame) {
                          if (frame.number > 2)
                              throw Error("", "frame", std::to_string(frame.number), "bad");
                      });
                  }),
                  "frame: 3: bad");
        EXPECT_EQ(writer.frames(), 3);
    }
    EXPECT_EQ(FileCount(), 1u);
}

// The second frame is written over what the first left in memory.
TEST_F(Videos, MemoryThatServedBeforeMakesNoDifference) {
    const Size size = {7, 5};
    for (const PixelFormat from : kAllFormats) {
        const std::string in = PutNoise("in.raw", 2 * FrameBytes(from, size));
        const RawLayout layout = {size, from};
        for (const PixelFormat to : kAllFormats) {
            if (to != from && !Converts(from, to)) continue;
            SCOPED_TRACE(std::string(FormatName(from)) + " to " + std::string(FormatName(to)));
            for (const bool unpadded : {false, true}) {
                std::string alone;
                for (const int frame : {0, 1}) {
                    ConvertFile({in, layout, frame}, {Path("out.raw"), "", to, unpadded});
                    alone += Get("out.raw");
                }
                ConvertFile({in, layout, {}}, {Path("out.raw"), "", to, unpadded});
                EXPECT_TRUE(Get("out.raw") == alone);
            }
        }
    }
}

TEST_F(Videos, SeriesThereAndBack) {
    const std::string card = PutCard("card.y4m", 12), series = Path("100%.%02d.bmp");
    ConvertFile({card, {}, {}, 3}, {series, "", {}});
    EXPECT_EQ(FileCount(), 13u);
    ConvertFile({series, {}, {}, 3}, {Path("back.rgb24"), "", {}});
    ConvertFile({card, {}, {}}, {Path("direct.rgb24"), "", {}});
    EXPECT_TRUE(Get("back.rgb24") == Get("direct.rgb24"));
    ConvertFile({series, {}, 11}, {Path("last.bmp"), "", {}});
    EXPECT_TRUE(Get("last.bmp") == Get("100%.11.bmp"));
    FlipFile({series, {}, {}, 2}, {series, "", {}}, Mirror::kVertical, {});  // each over itself
    FlipFile({series, {}, {}}, {Path("back.rgb24"), "", {}}, Mirror::kVertical, {});
    EXPECT_TRUE(Get("back.rgb24") == Get("direct.rgb24"));
}

TEST_F(Videos, SeriesWithGapsAndMixturesAreRefused) {
    for (const char* name : {"a8.pgm", "a9.pgm", "a10.pgm", "gap2.pgm", "gap4.pgm", "size1.pgm"})
        Put(name, "P5 1 1 255 a");
    Put("a09.pgm", "no number of this series");
    Put("size2.pgm", "P5 2 1 255 ab");
    Put("two0.rgb8", "ab");
    ConvertFile({Path("a%d.pgm"), {}, {}}, {Path("all.rgb8"), "", {}});
    EXPECT_EQ(Get("all.rgb8"), "aaa");
    const struct {
        std::string in, out, message;  // a part of it
        RawLayout layout = {};
    } cases[] = {
        {"gap%d.pgm", "out.rgb8", "gap3.pgm: open: is missing in the series, which goes on with "},
        {"none%d.pgm", "out.rgb8", "none%d.pgm: open: no file has a name like this"},
        {"none/%d.pgm", "out.rgb8", "none/0.pgm: open: No such"},
        {"size%d.pgm", "out.rgb8", "size2.pgm: frame: 2x1 RGB8: the series began with 1x1 RGB8"},
        {"two%d.rgb8",
         "out.pgm",
         "two0.rgb8: frame: 1: files of a series hold one",
         {Size{1, 1}, {}}},
        {"a%d.pgm", "gap%d.pgm", "gap4.pgm: series: is left over of a longer one; this one ends"},
        {"a%d.pgm", "%d/%d.pgm", "%d/%d.pgm: series: %d: stands twice"},
        {"a%d.pgm", "%d/a.pgm", "%d/a.pgm: series: %d: should be in the name of the file"},
        {"a%d.pgm", "a%4d.pgm", "a%4d.pgm: series: %4d: should be %d or"},
    };
    for (const auto& c : cases) {
        const std::string message = MessageOf([&] {
            ConvertFile({Path(c.in), c.layout, {}}, {Path(c.out), "", {}});
        });
        EXPECT_NE(message.find(c.message), std::string::npos) << message;
    }
}

TEST(Progress, SaysHowFastAndHowLong) {
    EXPECT_EQ(ProgressLine(1, 2, {}), "1 frame, 0.5 a second");
    EXPECT_EQ(ProgressLine(300, 30, 0.25), "300 frames, 10.0 a second, 1:30 left");
}

}  // namespace
}  // namespace pxb::tool
