// PxbAlphaBlend in every variant: all values of samples and alpha.
#include <gtest/gtest.h>

#include "fuzz/blending.h"
#include "support/effort.h"

namespace pxb::test {
namespace {

constexpr BlendJob kJobs[] = {{PXB_RGB24, true}, {PXB_RGB32, true}, {PXB_RGB32, false},
                              {PXB_YUY2, true},  {PXB_I420, true},  {PXB_YV12, true}};

// The samples of pixel p of 2^16 are p % 256 and p / 256; 4:2:0: those of a block of four pixels,
// of which the odd ones have another alpha.
void ExpectEveryValue(const BlendJob& job) {
    const int scale = Is420(job.format) ? 2 : 1, side = 256 * scale;
    const Rect all = {0, 0, side, side};
    const Image before(job.format, {side, side}), src(job.format, {side, side}),
        plane(PXB_RGB8, {side, side});
    const Image& alphas = job.has_plane ? plane : src;
    for (int turn = 0; turn < 256; ++turn) {
        if (!IsTried(turn)) continue;
        ForBlendedSamples(job, before.record, src.record, side, all, all, [&](Int d, Int s, Int a) {
            const Int p = job.has_plane ? a : a / 4, x = p % side / scale, y = p / side / scale;
            before.record.data[d] = static_cast<Byte>(x);
            src.record.data[s] = static_cast<Byte>(y);
            alphas.record.data[a] = static_cast<Byte>(x * 7 + y + turn + p % 2 * 100);
        });
        Image expected(job.format, {side, side}), dst(job.format, {side, side});
        expected.Tile(before.First(before.bytes));
        BlendByModel(job, expected.record, src.record, plane.record, all, all);
        for (const Variant& variant : RunnableVariants()) {
            const ForcedProcessor forced(variant.words);
            dst.Tile(before.First(before.bytes));
            ASSERT_EQ(PxbAlphaBlend(&dst.record, &src.record,
                                    job.has_plane ? &plane.record : nullptr, nullptr, nullptr),
                      PXB_SUCCESS);
            ASSERT_TRUE(dst == expected) << variant.name << ", turn " << turn;
        }
    }
}

TEST(AlphaBlend, EveryValue) {
    for (const BlendJob& job : kJobs)
        ASSERT_NO_FATAL_FAILURE(ExpectEveryValue(job)) << kFormatNames[job.format];
}

}  // namespace
}  // namespace pxb::test
