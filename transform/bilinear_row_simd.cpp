// Interpolated rows in registers: u and v of a pixel in one 64-bit element, two neighbouring pixels
// fetched by one 64-bit load.
#include "transform/bilinear_row.h"

#include "transform/simd/wide.h"

namespace pxb::PXB_TARGET {
namespace {

// Where a row of pixels has all four neighbours in the source, and no load reaches past it.
template <int kBytes>
class ClearPart {
  public:
    PXB_INLINE ClearPart(FixedPoint at, FixedPoint step, const SourceRowTable& source,
                         std::ptrdiff_t count)
        : at_(at), step_(step), source_(source), end_(count) {
        Trim(source.width - 2);
        // A pair of 3-byte pixels is read as 8 bytes, which must not be the last pair in memory. A
        // row may cross that in its middle, so it then keeps off the whole column of pairs.
        if (kBytes == 3 && Meets(source.width - 2, source.stride > 0 ? source.height - 2 : 0))
            Trim(source.width - 3);
    }
    PXB_INLINE std::ptrdiff_t First() const { return first_; }
    PXB_INLINE std::ptrdiff_t End() const { return end_; }

  private:
    PXB_INLINE std::int64_t Column(std::ptrdiff_t i) const { return (at_.u + i * step_.u) >> 16; }
    PXB_INLINE std::int64_t Row(std::ptrdiff_t i) const { return (at_.v + i * step_.v) >> 16; }
    PXB_INLINE bool IsClear(std::ptrdiff_t i, std::int64_t last_column) const {
        const std::int64_t q = Column(i), r = Row(i);
        return q >= 0 && r >= 0 && q <= last_column && r + 2 <= source_.height;
    }
    PXB_INLINE void Trim(std::int64_t last_column) {
        while (first_ < end_ && !IsClear(first_, last_column)) ++first_;
        while (first_ < end_ && !IsClear(end_ - 1, last_column)) --end_;
    }
    // Whether the row may come to that pair. Its coordinates are extreme at its ends.
    PXB_INLINE bool Meets(std::int64_t column, std::int64_t row) const {
        return first_ < end_ && (Column(first_) == column || Column(end_ - 1) == column) &&
               (Row(first_) == row || Row(end_ - 1) == row);
    }

    FixedPoint at_, step_;
    const SourceRowTable& source_;
    std::ptrdiff_t first_ = 0, end_;
};

PXB_INLINE bool FitsWords(const SourceRowTable& source) {
    constexpr std::ptrdiff_t kMost = 32767;
    const std::ptrdiff_t stride = source.stride < 0 ? -source.stride : source.stride;
    return source.width <= kMost && source.height <= kMost && stride <= kMost &&
           stride >= std::ptrdiff_t{source.width} * source.bytes_per_pixel;
}

PXB_INLINE std::int32_t Word(std::int64_t a) {
    return static_cast<std::int32_t>(a);
}

template <class V, int kBytes>
class Walk {
    using Register = typename V::Register;

  public:
    PXB_INLINE Walk(FixedPoint at, FixedPoint step, const SourceRowTable& source)
        : at_(at),
          step_(step),
          src_(source.data),
          stride_(source.stride),
          scale_(V::Set32(Word(source.stride << 16 | kBytes))) {
        alignas(64) std::int32_t ways[2][V::kPixels];
        for (int i = 0; i < V::kPixels; ++i) {
            std::int32_t* const way = &ways[i % 4 / 2][i / 4 * 4 + i % 2 * 2];
            way[0] = Word(i * step.u);
            way[1] = Word(i * step.v);
        }
        for (int j = 0; j < 2; ++j) way_[j] = V::LoadAll(reinterpret_cast<Byte*>(ways[j]));
    }

    // Pixels `first` to `end`, at least V::kPixels.
    PXB_INLINE void Write(Byte* dst, std::ptrdiff_t first, std::ptrdiff_t end) {
        const Register step = V::Point(Word(V::kPixels * step_.u), Word(V::kPixels * step_.v));
        GoTo(first);
        for (; first + V::kPixels <= end; first += V::kPixels) {
            WritePixels(dst + first * kBytes);
            for (Register& point : point_) point = V::Add32(point, step);
        }
        if (first == end) return;
        GoTo(end - V::kPixels);
        WritePixels(dst + (end - V::kPixels) * kBytes);
    }

  private:
    PXB_INLINE void GoTo(std::ptrdiff_t i) {
        const Register at = V::Point(Word(at_.u + i * step_.u), Word(at_.v + i * step_.v));
        for (int j = 0; j < 2; ++j) point_[j] = V::Add32(at, way_[j]);
    }
    PXB_INLINE void WritePixels(Byte* dst) const {
        alignas(64) std::int32_t offsets[V::kPixels];
        V::StoreAll(reinterpret_cast<Byte*>(offsets), V::Offsets(point_[0], point_[1], scale_));
        const Register pixels =
            V::PackBytes(Interpolate(point_[0], offsets), Interpolate(point_[1], offsets + 2));
        if (kBytes == 4)
            V::StoreBgrx(dst, pixels);
        else
            V::StoreBgr(dst, pixels);
    }
    // floor((b - a) w / 256) is the high word of 2 (b - a) and 128 w.
    PXB_INLINE Register Interpolate(Register point, const std::int32_t* offsets) const {
        const Register weights = V::And(V::template ShiftRight32<1>(point), V::Set32(255 << 7));
        const Register u = V::template Weights<0>(weights), v = V::template Weights<2>(weights);
        const Register above = Across(V::LoadPairs(src_, offsets), u);
        const Register below = Across(V::LoadPairs(src_ + stride_, offsets), u);
        const Register difference = V::Sub16(below, above);
        return V::Add16(above, V::MulHigh16(V::Add16(difference, difference), v));
    }
    PXB_INLINE Register Across(Register pairs, Register weights) const {
        const auto [first, twice_difference] = V::template Taps<kBytes>(pairs);
        return V::Add16(first, V::MulHigh16(twice_difference, weights));
    }

    FixedPoint at_, step_;
    const Byte* src_;
    std::ptrdiff_t stride_;
    Register scale_, way_[2], point_[2];
};

// A row that runs straight backward through a source row, as at 180 degrees, where all coordinates
// lie on whole numbers or within 1e-11 of them. The weights then are 0 or 255, and a weight of 255 is
// the second pixel, but one less where it is above the first.
template <int kBytes>
class HalfTurnedRow {
  public:
    PXB_INLINE HalfTurnedRow(FixedPoint at, FixedPoint step, const SourceRowTable& source)
        : u_weight_(WeightOf(at.u)), v_weight_(WeightOf(at.v)) {
        const std::int64_t q = at.u >> 16, r = at.v >> 16;
        const bool fits = step.u == -65536 && step.v == 0 && (u_weight_ == 0 || u_weight_ == 255) &&
                          (v_weight_ == 0 || v_weight_ == 255) && r >= 0 && r < source.height;
        if (!fits) return;
        const std::int64_t last = u_weight_ == 0 ? source.width - 1 : source.width - 2;
        first_ = q > last ? q - last : 0;
        end_ = q + 1;
        src_ = source.Row(static_cast<std::ptrdiff_t>(r)) + q * kBytes;
        across_ = u_weight_ == 0 ? 0 : kBytes;
        down_ = v_weight_ == 0 || r + 1 == source.height ? 0 : source.stride;
    }
    // The pixels that Write can do, of a row of `count`.
    PXB_INLINE std::ptrdiff_t First(std::ptrdiff_t count) const { return Within(first_, count); }
    PXB_INLINE std::ptrdiff_t End(std::ptrdiff_t count) const { return Within(end_, count); }

    // False if there are too few. Pixels of 3 bytes are read 16 bytes at a time, 4 too many: before
    // the first four, which may be the last in memory, and behind the others.
    template <class V>
    PXB_INLINE bool Write(Byte* dst, std::ptrdiff_t first, std::ptrdiff_t end) const {
        constexpr std::ptrdiff_t kBehind = kBytes == 3 ? 3 : 0;
        if (end - first < V::kPixels + kBehind) return false;
        WritePixels<V, true>(dst, first);
        for (std::ptrdiff_t i = first + V::kPixels; i < end; i += V::kPixels)
            WritePixels<V, false>(dst, i + V::kPixels < end ? i : end - V::kPixels);
        return true;
    }

  private:
    static PXB_INLINE std::ptrdiff_t Within(std::int64_t i, std::ptrdiff_t count) {
        return i < count ? static_cast<std::ptrdiff_t>(i) : count;
    }
    static PXB_INLINE int WeightOf(std::int64_t units) { return units >> 8 & 0xFF; }

    template <class V, bool kEarly>
    PXB_INLINE void WritePixels(Byte* dst, std::ptrdiff_t i) const {
        const Byte* const from = src_ - (i + V::kPixels - 1) * kBytes;
        auto pixels = Across<V, kEarly>(from);
        if (down_ != 0) pixels = V::JustBelow(pixels, Across<V, kEarly>(from + down_));
        const auto turned = V::ReversedLanes(pixels);
        if (kBytes == 4)
            V::StoreBgrx(dst + i * kBytes, turned);
        else
            V::StoreBgr(dst + i * kBytes, turned);
    }
    template <class V, bool kEarly>
    PXB_INLINE typename V::Register Across(const Byte* from) const {
        return V::JustBelow(Load<V, kEarly>(from), Load<V, kEarly>(from + across_));
    }
    template <class V, bool kEarly>
    static PXB_INLINE typename V::Register Load(const Byte* from) {
        if (kBytes == 4) return V::LoadAll(from);
        return V::template LoadBgrBlocks<kEarly>(from, 4 * kBytes);
    }

    int u_weight_, v_weight_;
    std::int64_t first_ = 0, end_ = 0;
    const Byte* src_ = nullptr;
    std::ptrdiff_t across_ = 0, down_ = 0;
};

template <int kBytes, class... V>
PXB_INLINE bool WriteInWidest(Byte* dst, FixedPoint at, FixedPoint step,
                              const SourceRowTable& source, std::ptrdiff_t first,
                              std::ptrdiff_t end) {
    const auto write = [&]<class Width>() PXB_INLINE_LAMBDA {
        if (end - first < Width::kPixels) return false;
        Walk<Width, kBytes>(at, step, source).Write(dst, first, end);
        return true;
    };
    return (write.template operator()<V>() || ...);
}

template <int kBytes, class... V>
PXB_INLINE bool WriteHalfTurned(Byte* dst, const HalfTurnedRow<kBytes>& row, std::ptrdiff_t first,
                                std::ptrdiff_t end) {
    return (row.template Write<V>(dst, first, end) || ...);
}

template <int kBytes>
PXB_INLINE void WriteRow(Byte* dst, FixedPoint at, FixedPoint step, const SourceRowTable& source,
                         std::ptrdiff_t count) {
    const auto write_plain = [&](std::ptrdiff_t from, std::ptrdiff_t to) PXB_INLINE_LAMBDA {
        if (from >= to) return;
        const FixedPoint point = {at.u + from * step.u, at.v + from * step.v};
        plain::BilinearRowKernel(dst + from * kBytes, point, step, source, to - from);
    };
    const auto write_ends = [&](std::ptrdiff_t first, std::ptrdiff_t end) PXB_INLINE_LAMBDA {
        write_plain(0, first);
        write_plain(end, count);
    };
    const HalfTurnedRow<kBytes> half_turned(at, step, source);
    const std::ptrdiff_t from = half_turned.First(count), to = half_turned.End(count);
    if (WriteHalfTurned<kBytes, PXB_TURN_WIDTHS>(dst, half_turned, from, to))
        return write_ends(from, to);
    const ClearPart<kBytes> clear(at, step, source, count);
    const std::ptrdiff_t first = clear.First(), end = clear.End();
    if (WriteInWidest<kBytes, PXB_TURN_WIDTHS>(dst, at, step, source, first, end))
        return write_ends(first, end);
    write_plain(0, count);
}

}  // namespace

void BilinearRowKernel(Byte* dst, FixedPoint at, FixedPoint step, const SourceRowTable& source,
                       std::ptrdiff_t count) {
    if (!FitsWords(source)) return plain::BilinearRowKernel(dst, at, step, source, count);
    if (source.bytes_per_pixel == 3) return WriteRow<3>(dst, at, step, source, count);
    WriteRow<4>(dst, at, step, source, count);
}

}  // namespace pxb::PXB_TARGET
