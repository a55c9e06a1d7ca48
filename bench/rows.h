// The rows of the benchmark: what is timed, and the speed to reach.
#pragma once
#include <cstdint>
#include <span>

#include "bench/frame.h"

namespace pxb::bench {

enum class Job {
    kConvert,
    kChannel1,  // alpha of RGB32, grey of RGB24
    kChannel5,  // studio luma
    kFill,
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
    double At(int width, int height) const;
};

struct Row {
    const char* name;
    Job job;
    int source;  // of PixelFormat; of a fill, the same as the destination
    int destination;
    Target target;
};

std::span<const Row> Rows();

// The images of one row at one place in memory.
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
