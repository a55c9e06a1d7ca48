// The rows of the benchmark: what is timed, and the speed to reach.
#pragma once
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "bench/frame.h"

namespace pxb::bench {

enum class Job {
    kConvert,
    kChannel1,  // alpha of RGB32, grey of RGB24
    kChannel5,  // studio luma
    kFill,
    kTask,  // as Row::task says
};

// What our widest variant is held against: the fastest other library, a plain copy (fills: memset)
// of the bytes written, or whichever of the two is easier to reach.
enum class Reference {
    kPeer,
    kCopy,
    kPeerOrCopy,
};

// Times as fast as the reference, at one size each; 0: no target.
struct Target {
    Reference reference = Reference::kPeer;
    double at_1920x1080 = 0;
    double at_3840x2160 = 0;
    double at_320x240 = 0;
    double At(int width, int height) const;
};

using Work = std::function<void()>;

struct PeerWork {
    Work run;       // empty: the library has nothing for the row
    int calls = 1;  // of the library; more than one where no single call does the job
};

struct Scene;

// Another library with the task of a row. A name that is not a peer's own, as "libyuv box", says
// what it does differently. The scene outlives the work.
struct Contender {
    std::string name;
    std::function<PeerWork(Scene&)> prepare;
};

struct Size {
    int width, height;
};

// What is no conversion of one image into another of the same size.
struct Task {
    Size source = {}, destination = {};       // even; both 0: as asked for
    std::function<std::int32_t(Scene&)> run;  // calls our library; returns its answer
    std::vector<Contender> contenders;
    // Where the task also reads the destination: puts there what it finds in a run whose result is
    // compared. Otherwise every byte is written.
    std::function<void(Scene&)> begin;
    bool turned = false;  // the destination has the source's width as its height
};

struct Row {
    std::string name;
    Job job;
    int source;  // of PixelFormat; of a fill, the same as the destination
    int destination;
    Target target;
    Task task = {};
};

std::span<const Row> Rows();

// The sizes at which a row is measured, given those asked for.
std::vector<Size> SizesOf(const Row& row, std::span<const Size> asked);

// The images of one row at one place in memory. Width and height are the destination's, or
// of a task that turns the source's.
struct Scene {
    Scene(const Row& row, int width, int height, int place);
    static constexpr int kPlaces = 3;

    Frame src, dst;
    Frame between;  // RGB32, for peers that need two steps
};

constexpr std::uint32_t kFillColor = 0x00C86432;  // R 50, G 100, B 200

// Calls the library. Returns its answer.
std::int32_t Run(const Row& row, Scene& scene);

}  // namespace pxb::bench
