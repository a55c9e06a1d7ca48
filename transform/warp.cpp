#include "transform/warp.h"

#include <algorithm>
#include <bit>

#include "core/float_guard.h"
#include "transform/bilinear_row.h"
#include "transform/row_span.h"
#include "transform/turns.h"

namespace pxb {
namespace {

constexpr double kUnitsPerPixel = 65536.0;

// Toward zero; |value| < 2^51.
std::int64_t Truncate(double value) {
#if defined(__SSE2__)
    return static_cast<std::int64_t>(value);
#else
    // The x87 unit would have to change its rounding for each conversion, and again after it. Next to
    // 1.5 * 2^52 doubles are whole numbers, the nearest of which stands in the lower bits.
    constexpr double kWhole = 0x1.8p52;
    const double sum = value + kWhole, nearest = sum - kWhole;
    const std::int64_t whole =
        std::bit_cast<std::int64_t>(sum) - std::bit_cast<std::int64_t>(kWhole);
    if (value >= 0) return nearest > value ? whole - 1 : whole;
    return nearest < value ? whole + 1 : whole;
#endif
}

bool IsInside(std::int64_t units, std::int32_t extent) {
    return units >= 0 && units >> 16 < extent;
}

// Of the coordinate `c` of a pixel in an edge band, 0 to 1. The part of it that lies on the source.
double Coverage(double c, const Track& track) {
    if (track.direction == Direction::kResting) return 1.0;
    if (c < 0) return std::max(0.0, 1.0 + c);
    if (c < track.extent - 1) return 1.0;
    return 1.0 - (c - static_cast<double>(Truncate(c)));
}

// Null for pixels that are not of 3 or 4 bytes.
BilinearRow* KernelFor(std::int32_t src_bytes, std::int32_t dst_bytes) {
    if (src_bytes == 3 && dst_bytes == 4) return BilinearRow24To32;
    if (src_bytes == 4 && dst_bytes == 3) return BilinearRow32To24;
    const bool same = src_bytes == dst_bytes && (src_bytes == 3 || src_bytes == 4);
    return same ? kBilinearRow.Choose() : nullptr;
}

class RowWarp {
  public:
    RowWarp(const Raster<Byte>& dst, const SourceRowTable& src, const Affine& map)
        : dst_(dst),
          src_(src),
          kernel_(KernelFor(src.bytes_per_pixel, dst.bytes_per_pixel)),
          step_{Truncate(map.m00 * kUnitsPerPixel), Truncate(map.m01 * kUnitsPerPixel)},
          u_(TrackOf(map.m20, map.m00, src.width)),
          v_(TrackOf(map.m21, map.m01, src.height)) {}

    bool HasWork() const {
        return kernel_ &&
               !(u_.direction == Direction::kResting && v_.direction == Direction::kResting);
    }

    void Write(Byte* row) const {
        RowSpan span;
        if (!RowSpanClip(u_, v_, dst_.width, &span)) return;
        const std::int64_t first = span.leading.all, end = dst_.width - span.trailing.all;
        const FixedPoint at = {Truncate(kUnitsPerPixel * At(u_, first)),
                               Truncate(kUnitsPerPixel * At(v_, first))};
        if (u_.direction == Direction::kResting && !IsInside(at.u, u_.extent)) return;
        if (v_.direction == Direction::kResting && !IsInside(at.v, v_.extent)) return;
        WriteBand(row, span.leading.outside, first);
        WriteBand(row, end, dst_.width - span.trailing.outside);
        kernel_(row + first * dst_.bytes_per_pixel, at, step_, src_, end - first);
    }

    // Row by row, by repeated addition.
    void Advance(double u, double v) {
        u_.start += u, u_.end += u;
        v_.start += v, v_.end += v;
    }

  private:
    Track TrackOf(double start, double step, std::int32_t extent) const {
        return {start, start + dst_.width * step, step, DirectionOf(step), extent};
    }
    static double At(const Track& track, std::int64_t x) {
        return track.start + track.step * static_cast<double>(x);
    }

    void WriteBand(Byte* row, std::int64_t first, std::int64_t end) const {
        if (first >= end) return;
        const Byte* const pixel = src_.data + src_.RowOffset(Truncate(At(v_, first))) +
                                  src_.ColumnOffset(Truncate(At(u_, first)));
        const int bytes = dst_.bytes_per_pixel, shared = std::min(bytes, src_.bytes_per_pixel);
        for (std::int64_t x = first; x < end; ++x) {
            const double coverage = Coverage(At(u_, x), u_) * Coverage(At(v_, x), v_);
            Byte* const to = row + x * bytes;
            for (int k = 0; k < shared; ++k)
                to[k] = static_cast<Byte>(Truncate(pixel[k] * coverage));
            if (bytes > shared) to[shared] = 0;
        }
    }

    Raster<Byte> dst_;
    SourceRowTable src_;
    BilinearRow* kernel_;
    FixedPoint step_;
    Track u_, v_;
};

// The whole numbers c with 0 <= start + c * step < extent that are below count; step is 1 or -1.
struct Interval {
    std::int32_t first, end;
};
Interval Within(double start, double step, std::int32_t extent, std::int32_t count) {
    const double first = step > 0 ? -start : start - (extent - 1), most = count;
    return {static_cast<std::int32_t>(std::clamp(first, 0.0, most)),
            static_cast<std::int32_t>(std::clamp(first + extent, 0.0, most))};
}

bool IsUnit(double step) {
    return step == 1.0 || step == -1.0;
}
bool IsWhole(double c) {
    constexpr double kMost = 4294967296.0;  // no sum of two extents is larger
    return c > -kMost && c < kMost && c == static_cast<double>(Truncate(c));
}

// Whole coordinates all over, each row of the destination lying on a column of the source. Nothing
// is interpolated then, and edge bands are single pixels that do not fade.
bool IsExactQuarterTurn(const Affine& map) {
    return map.m00 == 0 && map.m11 == 0 && IsUnit(map.m01) && IsUnit(map.m10) && IsWhole(map.m20) &&
           IsWhole(map.m21);
}

void TurnExactQuarter(const Raster<Byte>& dst, const SourceRowTable& src, const Affine& map) {
    const Interval x = Within(map.m21, map.m01, src.height, dst.width);
    const Interval y = Within(map.m20, map.m10, src.width, dst.height);
    if (x.first >= x.end || y.first >= y.end) return;
    const std::int32_t bytes = src.bytes_per_pixel;
    const std::int64_t u = Truncate(map.m20 + map.m10 * y.first);
    const std::int64_t v = Truncate(map.m21 + map.m01 * x.first);
    kTurnQuarter.Choose()(dst.Row(y.first) + std::ptrdiff_t{x.first} * bytes, dst.stride,
                          src.data + src.RowOffset(v) + src.ColumnOffset(u),
                          map.m01 > 0 ? src.stride : -src.stride, map.m10 > 0 ? bytes : -bytes,
                          x.end - x.first, y.end - y.first, bytes);
}

}  // namespace

PXB_NOINLINE void AffineWarp(const Raster<Byte>& dst, const SourceRowTable& src,
                             const Affine& map) {
    if (std::min({dst.width, dst.height, src.width, src.height}) <= 1) return;
    RowWarp warp(dst, src, map);
    if (!warp.HasWork()) return;
    if (src.bytes_per_pixel == dst.bytes_per_pixel && IsExactQuarterTurn(map))
        return TurnExactQuarter(dst, src, map);
    for (std::int32_t y = 0; y < dst.height; ++y) {
        warp.Write(dst.Row(y));
        warp.Advance(map.m10, map.m11);
    }
}

}  // namespace pxb
