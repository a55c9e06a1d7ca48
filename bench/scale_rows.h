// Rows of scaling, and how other libraries do it.
#pragma once
#include <span>
#include <vector>

#include "bench/rows.h"

namespace pxb::bench {

enum class Filter {
    kNearest,
    kBilinear,
    kShrinking,  // mode 6; what peers have for shrinking is another filter
};

std::vector<Row> ScaleRows();

// A library that scales; `shrinking` names what it sets beside mode 6.
struct Scaler {
    const char *name, *shrinking;
    // Source and destination of the scene are of the same format. The scene outlives the work.
    PeerWork (*prepare)(Filter filter, Scene& scene);
};

// Those linked into this program.
std::span<const Scaler> Scalers();

PeerWork ScaleWithLibyuv(Filter filter, Scene& scene);
PeerWork ScaleWithSwscale(Filter filter, Scene& scene);
PeerWork ScaleWithOpencv(Filter filter, Scene& scene);
PeerWork ScaleWithPixman(Filter filter, Scene& scene);
PeerWork ScaleWithZimg(Filter filter, Scene& scene);

// How far bilinear scaling is from what doubles give, ours beside the peers', as a table.
void PrintScalingQuality();

}  // namespace pxb::bench
