#include "transform/warp.h"

#include "transform/affine.h"
#include "transform/bilinear_row.h"
#include "transform/row_span.h"
#include "transform/turns.h"

namespace pxb::PXB_DOUBLES {
namespace {

constexpr double kUnitsPerPixel = 65536.0;

bool IsInside(std::int64_t units, std::int32_t extent) {
    return units >= 0 && units >> 16 < extent;
}

// Of the coordinate `c` of a pixel in an edge band, 0 to 1. The part of it that lies on the source.
double Coverage(double c, const Track& track) {
    if (track.direction == Direction::kResting) return 1.0;
    if (c < 0) return Larger(0.0, 1.0 + c);
    if (c < track.extent - 1) return 1.0;
    return 1.0 - (c - static_cast<double>(TruncateSmall(c)));
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
        RowSpan span = {};
        if (!RowSpanClip(u_, v_, dst_.width, &span)) return;
        const auto from_start = [](std::uint32_t count) {
            return static_cast<std::ptrdiff_t>(count);
        };
        const auto from_end = [&](std::uint32_t count) { return dst_.width - from_start(count); };
        const std::ptrdiff_t first = from_start(span.leading.all),
                             end = from_end(span.trailing.all);
        const FixedPoint at = {Truncate(kUnitsPerPixel * At(u_, first)),
                               Truncate(kUnitsPerPixel * At(v_, first))};
        if (u_.direction == Direction::kResting && !IsInside(at.u, u_.extent)) return;
        if (v_.direction == Direction::kResting && !IsInside(at.v, v_.extent)) return;
        WriteBand(row, from_start(span.leading.outside), first);
        WriteBand(row, end, from_end(span.trailing.outside));
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
    static double At(const Track& track, std::ptrdiff_t x) {
        return track.start + track.step * static_cast<double>(x);
    }

    void WriteBand(Byte* row, std::ptrdiff_t first, std::ptrdiff_t end) const {
        if (first >= end) return;
        const Byte* const pixel = src_.data + src_.RowOffset(Truncate(At(v_, first))) +
                                  src_.ColumnOffset(Truncate(At(u_, first)));
        const int bytes = dst_.bytes_per_pixel;
        for (std::ptrdiff_t x = first; x < end; ++x) {
            const double coverage = Coverage(At(u_, x), u_) * Coverage(At(v_, x), v_);
            const auto faded = [&](int k) {
                return static_cast<Byte>(TruncateSmall(pixel[k] * coverage));
            };
            Byte* const to = row + x * bytes;
            for (int k = 0; k < 3; ++k) to[k] = faded(k);
            if (bytes == 4) to[3] = src_.bytes_per_pixel == 4 ? faded(3) : Byte{0};
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
    const auto within = [=](double c) PXB_INLINE_LAMBDA {
        return static_cast<std::int32_t>(Truncate(Smaller(Larger(c, 0.0), most)));
    };
    return {within(first), within(first + extent)};
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

// At least 2 x 2 each.
PXB_NOINLINE void AffineWarp(const Raster<Byte>& dst, const SourceRowTable& src,
                             const Affine& map) {
    RowWarp warp(dst, src, map);
    if (!warp.HasWork()) return;
    if (src.bytes_per_pixel == dst.bytes_per_pixel && IsExactQuarterTurn(map))
        return TurnExactQuarter(dst, src, map);
    for (std::int32_t y = 0; y < dst.height; ++y) {
        warp.Write(dst.Row(y));
        warp.Advance(map.m10, map.m11);
    }
}

bool IsLargeEnough(std::int32_t width, std::int32_t height) {
    return width > 1 && height > 1;
}

}  // namespace

void TurnByWarp(const Raster<Byte>& dst, const SourceRowTable& src, std::int32_t angle_degrees) {
    if (!IsLargeEnough(dst.width, dst.height) || !IsLargeEnough(src.width, src.height)) return;
    const FloatGuard guard;
    Affine map;
    TurnAboutCentres(angle_degrees, dst, src, &map);
    AffineWarp(dst, src, map);
}

}  // namespace pxb::PXB_DOUBLES
