// What all kernels of scaling share: the walk over destination rows, the source rows that belong to
// each, and the row of scratch memory between the two passes.
#pragma once
#include "core/copy.h"
#include "scale/passes.h"

namespace pxb {

// Parts of the scratch memory, each at a multiple of 64 bytes.
class Scratch {
  public:
    explicit PXB_INLINE Scratch(const ScaleJob& job) : at_(job.scratch) {}

    template <class T>
    PXB_INLINE T* Take(std::ptrdiff_t count) {
        T* const part = reinterpret_cast<T*>(at_);
        at_ += (count * static_cast<std::ptrdiff_t>(sizeof(T)) + 63) & ~std::ptrdiff_t{63};
        return part;
    }

  private:
    Byte* at_;
};

// Room around a row: pixels that repeat or fade the edges, and what registers read too much.
constexpr std::ptrdiff_t kRoomBefore = 64, kRoomBehind = 192;

PXB_INLINE Byte* TakeRow(Scratch& scratch, std::ptrdiff_t bytes) {
    return scratch.Take<Byte>(kRoomBefore + bytes + kRoomBehind) + kRoomBefore;
}

PXB_INLINE Byte* TakeZeros(Scratch& scratch, std::ptrdiff_t bytes) {
    Byte* const zeros = scratch.Take<Byte>(bytes);
    for (std::ptrdiff_t i = 0; i < bytes; ++i) zeros[i] = 0;
    return zeros;
}

PXB_INLINE bool AreEqual(const SourcePoint& a, const SourcePoint& b) {
    return a.first == b.first && a.weight[0] == b.weight[0] && a.weight[1] == b.weight[1] &&
           a.weight[2] == b.weight[2] && a.weight[3] == b.weight[3];
}

// write(to, src, point) for each row of each destination; rows of equal points are copies.
template <class Write>
PXB_INLINE void ForScaledRows(const ScaleJob& job, const Write& write) {
    for (int plane = 0; plane < job.planes; ++plane) {
        Rows to(job.dst[plane], job.dst_stride);
        for (std::int32_t y = 0; y < job.dst_height; ++y, to.Next()) {
            if (y > 0 && AreEqual(job.rows[y], job.rows[y - 1]))
                CopyBytes(to[0], to[-1], static_cast<std::size_t>(job.dst_row_bytes));
            else
                write(to[0], job.src[plane], job.rows[y]);
        }
    }
}

// Row -1 and those behind the last are as SourcePoint tells of faded edges.
PXB_INLINE const Byte* FadedRow(const ScaleJob& job, const Byte* src, const Byte* zeros,
                                std::int32_t y) {
    if (y < 0 || y == job.src_height) return zeros;
    return src + (y < job.src_height ? y : job.src_height - 1) * job.src_stride;
}

PXB_INLINE const Byte* ClampedRow(const ScaleJob& job, const Byte* src, std::ptrdiff_t y) {
    const std::ptrdiff_t last = job.src_height - 1;
    return src + (y < 0 ? 0 : y > last ? last : y) * job.src_stride;
}

// Room for the pixels of a faded edge, and for zero bytes before the row.
PXB_INLINE void FadeEdges(Byte* row, const ScaleJob& job, int zero) {
    const std::ptrdiff_t pixel = job.layout.bytes[0].unit;
    Byte* const end = row + job.src_row_bytes;
    for (std::ptrdiff_t i = 0; i < pixel; ++i) {
        row[-1 - i] = end[i] = static_cast<Byte>(zero);
        end[pixel + i] = end[i - pixel];
    }
}

// One pixel before the row and two behind it.
PXB_INLINE void RepeatEdges(Byte* row, const ScaleJob& job) {
    const std::ptrdiff_t pixel = job.layout.bytes[0].unit;
    Byte* const end = row + job.src_row_bytes;
    for (std::ptrdiff_t i = 0; i < pixel; ++i) {
        row[i - pixel] = row[i];
        end[i] = end[pixel + i] = end[i - pixel];
    }
}

}  // namespace pxb
