// The one way along the frames of a video: each is read, worked on and written, in this order.
#pragma once
#include <functional>
#include <optional>

#include "frame_source.h"
#include "frame_writer.h"

namespace pxb::tool {

// With several threads, reading and writing go on beside the work, one frame at a time and in order;
// work on several frames goes on at once. The first failure in the order of frames ends all, and is
// the same for any number of threads.
struct FrameSteps {
    std::function<std::optional<Frame>()> read;  // nothing: there are no more
    std::function<void(Frame&)> work;
    std::function<void(Frame&)> write;
};

// The most that this build can use; 1 where it has no library for them.
int MostThreads();
// Of this machine, and not more than that.
int UsualThreads();

void RunInTurn(const FrameSteps& steps);
// At most two frames a thread are in memory.
void RunInParallel(const FrameSteps& steps, int threads);

// From `source` to `writer`, with `work` in between: all frames, the first if the output holds only
// one, or the one that was asked for. Tells of progress. The output has to be committed.
void WalkFrames(const InputOptions& from, FrameWriter& writer,
                const std::function<void(Frame&)>& work);

}  // namespace pxb::tool
