// The commands that write pictures: frames come in, go through the library once, and go out.
#include "commands.h"

#include <utility>

#include "convert.h"
#include "error.h"
#include "frame_loop.h"
#include "frame_writer.h"
#include "geometry.h"
#include "overlay.h"
#include "printable.h"
#include "series.h"
#include "testcard.h"

namespace pxb::tool {
namespace {

// Width to height of a pixel, as "16:15". Turned by other angles pixels that are not square have no
// such ratio: "0:0", unknown.
std::string TurnedAspect(const std::string& aspect, std::int32_t angle_degrees) {
    const std::size_t colon = aspect.find(':');
    if (colon == std::string::npos || angle_degrees % 180 == 0) return aspect;
    const std::string width = aspect.substr(0, colon), height = aspect.substr(colon + 1);
    if (width == height) return aspect;
    return IsQuarter(angle_degrees) ? height + ":" + width : "0:0";
}

}  // namespace

void PaintTestCards(const OutputOptions& to, Size size, int frames) {
    FrameWriter writer(to);
    if (frames > 1 && !writer.many_frames())
        throw Error(to.path, "--frames", std::to_string(frames),
                    "a " + std::string(writer.type().description) + " holds one frame");
    CheckSize("test card", PXB_I420, size);
    const Video video{PXB_I420, size, "25:1", "p", "1:1"};
    for (int number = 0; number < frames; ++number) {
        Frame frame{"test card", video, PaintTestCard(size, number, frames), number};
        writer.Prepare(frame);
        writer.Write(frame);
    }
    writer.Commit();
}

void ConvertFile(const InputOptions& from, const OutputOptions& to) {
    FrameWriter writer(to);
    WalkFrames(from, writer, [](Frame&) {});
    writer.Commit();  // the input is closed by now: it may be the file that this replaces
}

void FlipFile(const InputOptions& from, const OutputOptions& to, Mirror mirror,
              const std::optional<Rect>& part) {
    FrameWriter writer(to);
    WalkFrames(from, writer, [&](Frame& frame) {
        frame.picture = Flip(frame.file, frame.picture, mirror, part);
    });
    writer.Commit();
}

void ExtractChannel(const InputOptions& from, const OutputOptions& to, int channel) {
    FrameWriter writer(to);
    writer.Demand(PXB_RGB8, "channel");
    WalkFrames(from, writer, [&](Frame& frame) {
        frame.picture = GetChannel(frame.file, frame.picture, channel);
        frame.video.alpha = false;  // not lost, but not asked for
    });
    writer.Commit();
}

void BlendOver(const InputOptions& background, const OverlayOptions& overlay,
               const OutputOptions& to) {
    FrameWriter writer(to);
    Overlay logo(overlay);
    WalkFrames(background, writer, [&](Frame& frame) { logo.LayOver(frame.file, frame.picture); });
    writer.Commit();
}

void ResizeFile(const InputOptions& from, const OutputOptions& to, const Scaling& scaling) {
    FrameWriter writer(to);
    if (scaling.to) CheckRect(to.path, "--to-rect", *scaling.to, scaling.size);
    WalkFrames(from, writer, [&](Frame& frame) {
        Picture scaled = Resize(frame.file, frame.picture, scaling);
        if (frame.number == 0) CheckMode(frame.file, frame.picture, scaling);
        if (!frame.video.aspect.empty() && !KeepsProportions(frame.picture, scaling))
            frame.video.aspect = "0:0";  // unknown
        frame.picture = std::move(scaled);
    });
    writer.Commit();
}

void RotateFile(const InputOptions& from, const OutputOptions& to, const Rotation& rotation) {
    FrameWriter writer(to);
    WalkFrames(from, writer, [&](Frame& frame) {
        frame.video.aspect = TurnedAspect(frame.video.aspect, rotation.angle_degrees);
        frame.picture = Rotate(frame.file, frame.picture, rotation);
    });
    writer.Commit();
}

}  // namespace pxb::tool
