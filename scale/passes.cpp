// The kernels of scaling in plain code.
#include "scale/passes.h"

#include "scale/plain_columns.h"
#include "scale/row_loop.h"

namespace pxb::plain {
namespace {

void BlendRows(Byte* row, const Byte* a, const Byte* b, int weight, std::ptrdiff_t bytes) {
    if (weight == 0) return CopyBytes(row, a, static_cast<std::size_t>(bytes));
    for (std::ptrdiff_t i = 0; i < bytes; ++i)
        row[i] = static_cast<Byte>(a[i] + ((b[i] - a[i]) * weight >> 8));
}

void SumRows(Byte* row, const Byte* a, const Byte* b, const Byte* c, const Byte* d,
             const Byte* weight, std::ptrdiff_t bytes) {
    const int wa = weight[0], wb = weight[1], wc = weight[2], wd = weight[3];
    for (std::ptrdiff_t i = 0; i < bytes; ++i)
        row[i] = RoundedMean(wa * a[i] + wb * b[i] + wc * c[i] + wd * d[i]);
}

}  // namespace

void ScaleNearest(const ScaleJob& job) {
    ForScaledRows(job, [&](Byte* to, const Byte* src, const SourcePoint& point) {
        CopyColumns(to, src + point.first * job.src_stride, job);
    });
}

void ScaleBilinear(const ScaleJob& job) {
    Scratch scratch(job);
    Byte* const zeros = TakeZeros(scratch, job.src_row_bytes);
    Byte* const row = TakeRow(scratch, job.src_row_bytes);
    BlendColumn* const columns = TakeBlendColumns(scratch, job);
    ForScaledRows(job, [&](Byte* to, const Byte* src, const SourcePoint& point) {
        BlendRows(row, FadedRow(job, src, zeros, point.first),
                  FadedRow(job, src, zeros, point.first + 1), point.weight[1], job.src_row_bytes);
        FadeEdges(row, job, 0);
        BlendColumns<0>(to, row, columns, job.dst_row_bytes);
    });
}

void ScaleSpline(const ScaleJob& job) {
    Scratch scratch(job);
    Byte* const row = TakeRow(scratch, job.src_row_bytes);
    SumColumn* const columns = TakeSumColumns(scratch, job);
    ForScaledRows(job, [&](Byte* to, const Byte* src, const SourcePoint& point) {
        const auto from = [&](std::ptrdiff_t k) { return ClampedRow(job, src, point.first + k); };
        SumRows(row, from(0), from(1), from(2), from(3), point.weight, job.src_row_bytes);
        RepeatEdges(row, job);
        SumColumns<0>(to, row, columns, job.layout.bytes[0].unit, job.dst_row_bytes);
    });
}

}  // namespace pxb::plain
