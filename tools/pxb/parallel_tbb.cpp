// Frames at work on several threads, by oneTBB.
#include <atomic>
#include <exception>
#include <memory>

#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/parallel_pipeline.h>
#include <oneapi/tbb/task_arena.h>

#include "frame_loop.h"

namespace pxb::tool {
namespace {

// A failure takes the place of its frame, and is met by the step that sees all frames in order.
struct Passenger {
    std::optional<Frame> frame;
    std::exception_ptr failure;
};

}  // namespace

int MostThreads() {
    return 256;
}

// Failures do not pass through the pipeline: it would leak the frames that are under way.
void RunInParallel(const FrameSteps& steps, int threads) {
    using tbb::filter_mode, tbb::make_filter;
    std::exception_ptr failure;  // the first in the order of frames
    std::atomic<bool> failed = false;
    bool reading = true;
    const auto read = [&](tbb::flow_control& control) {
        auto passenger = std::make_shared<Passenger>();
        try {
            if (reading && !failed) passenger->frame = steps.read();
        } catch (...) {
            passenger->failure = std::current_exception();
            reading = false;
        }
        if (!passenger->frame && !passenger->failure) control.stop();
        return passenger;
    };
    const auto work = [&](std::shared_ptr<Passenger> passenger) {
        try {
            if (passenger->frame && !failed) steps.work(*passenger->frame);
        } catch (...) {
            passenger->failure = std::current_exception();
        }
        return passenger;
    };
    const auto write = [&](const std::shared_ptr<Passenger>& passenger) {
        if (failed) return;
        try {
            if (passenger->failure) std::rethrow_exception(passenger->failure);
            steps.write(*passenger->frame);
        } catch (...) {
            failure = std::current_exception();
            failed = true;
        }
    };

    using Token = std::shared_ptr<Passenger>;
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism,
                                    static_cast<std::size_t>(threads));
    tbb::task_arena arena(threads);  // also above the number of processors
    arena.execute([&] {
        tbb::parallel_pipeline(2 * static_cast<std::size_t>(threads),
                               make_filter<void, Token>(filter_mode::serial_in_order, read) &
                                   make_filter<Token, Token>(filter_mode::parallel, work) &
                                   make_filter<Token, void>(filter_mode::serial_in_order, write));
    });
    if (failure) std::rethrow_exception(failure);
}

}  // namespace pxb::tool
