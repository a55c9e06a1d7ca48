// Other libraries that do the same jobs.
#pragma once
#include <span>

#include "bench/rows.h"

namespace pxb::bench {

struct Peer {
    const char* name;
    // The scene must outlive the work.
    PeerWork (*prepare)(const Row& row, Scene& scene);
};

// Those linked into this program.
std::span<const Peer> Peers();

PeerWork PrepareLibyuv(const Row& row, Scene& scene);
PeerWork PrepareSwscale(const Row& row, Scene& scene);
PeerWork PrepareOpencv(const Row& row, Scene& scene);

}  // namespace pxb::bench
