// Blending, beside libraries that composite.
#pragma once
#include <memory>
#include <vector>

#include "bench/rows.h"

namespace pxb::bench {

// The alpha plane of a scene, an RGB8 image of the destination's size.
ImageBuffer MaskOf(Scene& scene);

// A copy of the source, RGB32, whose colours are multiplied by its alpha, as other libraries want
// them.
std::shared_ptr<Frame> Premultiplied(const Scene& scene);

// Rows of PxbAlphaBlend.
std::vector<Row> BlendRows();

// Premultiplied pixels over others; bytes or pixels through the mask. libyuv wants an alpha for each
// byte, and takes two calls for that.
PeerWork BlendOwnAlphaByLibyuv(Scene& scene);
PeerWork BlendBytesByLibyuv(Scene& scene);
PeerWork BlendI420ByLibyuv(Scene& scene);
PeerWork BlendOwnAlphaByPixman(Scene& scene);
PeerWork BlendWithMaskByPixman(Scene& scene);

}  // namespace pxb::bench
