// Horizontal passes in plain integers, byte by byte: for processors without shuffles, and for what
// does not fit into a register. kFlip: added to the bytes of the row, as signed bytes, to get those
// of the image.
#pragma once
#include "scale/row_loop.h"

namespace pxb {

// (sum + 127) / 255
PXB_INLINE Byte RoundedMean(int sum) {
    return static_cast<Byte>((sum + 128) * 257 >> 16);
}

struct BlendColumn {
    std::int32_t first;
    std::uint16_t unit, weight;  // of the second
};

PXB_INLINE BlendColumn* TakeBlendColumns(Scratch& scratch, const ScaleJob& job) {
    BlendColumn* const columns = scratch.Take<BlendColumn>(job.dst_row_bytes);
    ColumnWalk walk(job.layout, job.columns, 0);
    for (std::ptrdiff_t i = 0; i < job.dst_row_bytes; ++i) {
        const Column column = walk.Next();
        const Byte weight = column.weight[1];
        columns[i] = {static_cast<std::int32_t>(column.first),
                      static_cast<std::uint16_t>(weight ? column.unit : 0), weight};
    }
    return columns;
}

template <int kFlip>
PXB_INLINE int ByteOf(const Byte* at) {
    return kFlip ? static_cast<signed char>(*at) + kFlip : *at;
}

template <int kFlip>
PXB_INLINE void BlendColumns(Byte* to, const Byte* row, const BlendColumn* columns,
                             std::ptrdiff_t count) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const BlendColumn& column = columns[i];
        const Byte* const from = row + column.first;
        const int a = ByteOf<kFlip>(from), b = ByteOf<kFlip>(from + column.unit);
        to[i] = static_cast<Byte>(a + ((b - a) * column.weight >> 8));
    }
}

struct SumColumn {
    std::int32_t first;
    Byte weight[4];
};

PXB_INLINE SumColumn* TakeSumColumns(Scratch& scratch, const ScaleJob& job) {
    SumColumn* const columns = scratch.Take<SumColumn>(job.dst_row_bytes);
    ColumnWalk walk(job.layout, job.columns, 0);
    for (std::ptrdiff_t i = 0; i < job.dst_row_bytes; ++i) {
        const Column column = walk.Next();
        columns[i].first = static_cast<std::int32_t>(column.first);
        for (int k = 0; k < 4; ++k) columns[i].weight[k] = column.weight[k];
    }
    return columns;
}

template <int kFlip>
PXB_INLINE void SumColumns(Byte* to, const Byte* row, const SumColumn* columns, std::ptrdiff_t unit,
                           std::ptrdiff_t count) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const Byte* const from = row + columns[i].first;
        int sum = 0;
        for (int k = 0; k < 4; ++k) sum += columns[i].weight[k] * ByteOf<kFlip>(from + k * unit);
        to[i] = RoundedMean(sum);
    }
}

template <int kBytes>
PXB_INLINE void CopyPixels(Byte* to, const Byte* row, const SourcePoint* points,
                           std::ptrdiff_t bytes) {
    for (Byte* const end = to + bytes; to != end; to += kBytes, ++points) {
        const Byte* const from = row + std::ptrdiff_t{points->first} * kBytes;
        for (int i = 0; i < kBytes; ++i) to[i] = from[i];
    }
}

// Straight from a row of the source.
PXB_INLINE void CopyColumns(Byte* to, const Byte* row, const ScaleJob& job) {
    if (job.dst_row_bytes == job.src_row_bytes)
        return CopyBytes(to, row, static_cast<std::size_t>(job.dst_row_bytes));
    switch (job.layout.group_bytes) {
        case 1:
            return CopyPixels<1>(to, row, job.columns[0], job.dst_row_bytes);
        case 3:
            return CopyPixels<3>(to, row, job.columns[0], job.dst_row_bytes);
        default:
            return CopyPixels<4>(to, row, job.columns[0], job.dst_row_bytes);
    }
}

}  // namespace pxb
