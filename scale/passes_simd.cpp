// The kernels of scaling, the same bytes as the plain ones.
#include "scale/passes.h"
#include "scale/simd/across.h"

namespace pxb::PXB_TARGET {
namespace {

// Asks for the row `stride` bytes after b, which is likely to come next. The processor foresees no
// rows of a few kilobytes by itself; 3 to 10 % of a call (AMD EPYC, Zen 3).
PXB_INLINE void BlendRows(Byte* row, const Byte* a, const Byte* b, int weight, std::ptrdiff_t bytes,
                          std::ptrdiff_t stride) {
    const RowWidths widths(false);
    if (weight == 0)
        widths.ForPixels(bytes, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
            V::Store(row + x, V::Keep(V::Load(a + x)));
        });
    else if (weight == 128)
        widths.ForPixels(bytes, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
            __builtin_prefetch(b + stride + x);
            V::Store(row + x, V::Mean(V::Load(a + x), V::Load(b + x)));
        });
    else
        widths.ForPixels(bytes, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
            __builtin_prefetch(b + stride + x);
            V::Store(row + x, V::Blend(V::Load(a + x), V::Load(b + x), weight));
        });
}

PXB_INLINE void SumRows(Byte* row, const Byte* const (&from)[4], const Byte* weights,
                        std::ptrdiff_t bytes, std::ptrdiff_t stride) {
    const Byte *const a = from[0], *const b = from[1], *const c = from[2], *const d = from[3];
    const RowWeights of = {{weights[0], weights[1], weights[2], weights[3]}};
    RowWidths(false).ForPixels(bytes, [=]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
        __builtin_prefetch(d + stride + x);
        const typename V::Register rows[4] = {V::Load(a + x), V::Load(b + x), V::Load(c + x),
                                              V::Load(d + x)};
        V::Store(row + x, V::Sum(rows, of));
    });
}

}  // namespace

#if !defined(PXB_TARGET_SSE2)
void ScaleNearest(const ScaleJob& job) {
    Scratch scratch(job);
    const CopyAcross across(job, scratch);
    ForScaledRows(job, [&](Byte* to, const Byte* src, const SourcePoint& point)
                           PXB_INLINE_LAMBDA { across(to, src + point.first * job.src_stride); });
}
#endif

void ScaleBilinear(const ScaleJob& job) {
    Scratch scratch(job);
    Byte* const zeros = TakeZeros(scratch, job.src_row_bytes);
    Byte* const row = TakeRow(scratch, job.src_row_bytes);
    const BlendAcross across(job, scratch);
    ForScaledRows(job, [&](Byte* to, const Byte* src, const SourcePoint& point) PXB_INLINE_LAMBDA {
        const Byte* const a = FadedRow(job, src, zeros, point.first);
        const Byte* const b = FadedRow(job, src, zeros, point.first + 1);
        if (across.TakeBoth(to, a, b, point.weight[1], job.src_stride)) return;
        BlendRows(row, a, b, point.weight[1], job.src_row_bytes, job.src_stride);
        FadeEdges(row, job, kFlip);
        across(to, row);
    });
}

void ScaleSpline(const ScaleJob& job) {
    Scratch scratch(job);
    Byte* const row = TakeRow(scratch, job.src_row_bytes);
    const SumAcross across(job, scratch);
    ForScaledRows(job, [&](Byte* to, const Byte* src, const SourcePoint& point) PXB_INLINE_LAMBDA {
        const std::ptrdiff_t y = point.first;
        const Byte* const from[4] = {ClampedRow(job, src, y), ClampedRow(job, src, y + 1),
                                     ClampedRow(job, src, y + 2), ClampedRow(job, src, y + 3)};
        SumRows(row, from, point.weight, job.src_row_bytes, job.src_stride);
        RepeatEdges(row, job);
        across(to, row);
    });
}

}  // namespace pxb::PXB_TARGET
