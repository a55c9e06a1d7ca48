// Blending: one call, compared in every variant.
#pragma once
#include "fuzz/stage.h"

namespace pxb::test {

// How the samples of a call lie; `has_plane`: alpha comes from a plane, not from the fourth bytes.
struct BlendJob {
    int format;
    bool has_plane;
};

constexpr Byte Mixed(int d, int s, int alpha) {
    constexpr int kLift = 256;  // makes what is divided positive
    return static_cast<Byte>(((s - d) * alpha + kLift * 256) / 256 - kLift + d);
}
static_assert(Mixed(0, 255, 255) == 254 && Mixed(255, 0, 255) == 0 && Mixed(200, 100, 0) == 200);
static_assert(Mixed(0, 255, 128) == 127 && Mixed(255, 0, 128) == 127 && Mixed(10, 11, 255) == 10);

// visit(d, s, a) for each sample, in order: offsets from the data of the images and, with a plane,
// from that of a plane with this stride. The rectangles are equally large.
template <class Visit>
void ForBlendedSamples(const BlendJob& job, const ImageBuffer& dst, const ImageBuffer& src,
                       Int alpha_stride, const Rect& to, const Rect& from, const Visit& visit) {
    const int bytes = BytesPerPixel(job.format);
    for (int i = 0; i < to.bottom - to.top; ++i)
        for (int j = 0; j < to.right - to.left; ++j) {
            const Int to_x = to.left + j, to_y = to.top + i;
            const Int from_x = from.left + j, from_y = from.top + i;
            const Int d = to_y * dst.stride + to_x * bytes;
            const Int s = from_y * src.stride + from_x * bytes;
            const Int alpha = job.has_plane ? from_y * alpha_stride + from_x : s + 3;
            for (int k = 0; k < std::min(bytes, 3); ++k) visit(d + k, s + k, alpha);
            if (!Is420(job.format) || i % 2 || j % 2) continue;
            const Int d_luma = Int{dst.stride} * dst.height;
            const Int s_luma = Int{src.stride} * src.height;
            const Int d_sample = to_y / 2 * (dst.stride / 2) + to_x / 2;
            const Int s_sample = from_y / 2 * (src.stride / 2) + from_x / 2;
            if (d_sample >= d_luma / 4 || s_sample >= s_luma / 4) continue;
            visit(d_luma + d_sample, s_luma + s_sample, alpha);
            visit(d_luma + d_luma / 4 + d_sample, s_luma + s_luma / 4 + s_sample, alpha);
        }
}

inline void BlendByModel(const BlendJob& job, const ImageBuffer& dst, const ImageBuffer& src,
                         const ImageBuffer& alpha, const Rect& to, const Rect& from) {
    const Byte* const alphas = job.has_plane ? alpha.data : src.data;
    ForBlendedSamples(job, dst, src, alpha.stride, to, from, [&](Int d, Int s, Int a) {
        dst.data[d] = Mixed(dst.data[d], src.data[s], alphas[a]);
    });
}

}  // namespace pxb::test
