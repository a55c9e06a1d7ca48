#include "frame_loop.h"

#include <algorithm>
#include <thread>

#include "error.h"
#include "progress.h"

namespace pxb::tool {

void RunInTurn(const FrameSteps& steps) {
    while (std::optional<Frame> frame = steps.read()) {
        steps.work(*frame);
        steps.write(*frame);
    }
}

int UsualThreads() {
    const auto processors = static_cast<int>(std::thread::hardware_concurrency());
    return std::clamp(processors, 1, MostThreads());
}

void WalkFrames(const InputOptions& from, FrameWriter& writer,
                const std::function<void(Frame&)>& work) {
    const SparePictures spares;
    FrameSource source(from);
    Progress progress;
    const bool all = writer.many_frames() && !from.frame;
    const std::int64_t first = from.frame.value_or(0);
    const auto read = [&]() -> std::optional<Frame> {
        if (!all && source.taken() > first) return std::nullopt;
        while (source.taken() < first)
            if (!source.Next()) return std::nullopt;
        std::optional<Frame> frame = source.Next();
        if (frame) frame->number = source.taken() - 1 - first;
        return frame;
    };
    const auto write = [&](Frame& frame) {
        writer.Write(frame);
        progress.Show(writer.frames(), frame.done);
    };
    const auto finish = [&](Frame& frame) {
        work(frame);
        writer.Prepare(frame);
    };
    const FrameSteps steps = {read, finish, write};
    if (all && from.threads > 1)
        RunInParallel(steps, from.threads);
    else
        RunInTurn(steps);
    if (writer.frames() == 0)
        throw Error(source.name(), "frame", std::to_string(first),
                    "the file has " + std::to_string(source.taken()) +
                        (source.taken() == 1 ? " frame" : " frames") + ", counted from 0");
}

}  // namespace pxb::tool
