// Builds without a library for threads.
#include "frame_loop.h"

namespace pxb::tool {

int MostThreads() {
    return 1;
}

void RunInParallel(const FrameSteps& steps, int) {
    RunInTurn(steps);
}

}  // namespace pxb::tool
