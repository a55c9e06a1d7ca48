#include "bench/peers.h"

#include <vector>

namespace pxb::bench {

std::span<const Peer> Peers() {
    static const std::vector<Peer> kPeers = {
#if defined(PXB_PEER_LIBYUV)
        {"libyuv", PrepareLibyuv},
#endif
#if defined(PXB_PEER_SWSCALE)
        {"swscale", PrepareSwscale},
#endif
#if defined(PXB_PEER_OPENCV)
        {"opencv", PrepareOpencv},
#endif
    };
    return kPeers;
}

}  // namespace pxb::bench
