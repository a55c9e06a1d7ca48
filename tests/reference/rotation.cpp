#include "rotation.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

using Int = std::int64_t;

// One coordinate of the source along one row of the destination.
struct Axis {
    double start, step, end;
    Int extent;

    bool Rests() const { return std::abs(step) <= 0.001; }
    double At(Int x) const { return start + step * static_cast<double>(x); }
    Int Fixed(Int x) const { return static_cast<Int>(65536.0 * At(x)); }
    Int PixelAt(Int x) const { return std::clamp(static_cast<Int>(At(x)), Int{0}, extent - 1); }
    double Coverage(Int x) const {
        const double c = At(x);
        if (Rests()) return 1;
        if (c < 0) return std::max(0.0, 1 + c);
        return c >= static_cast<double>(extent - 1) ? 1 - (c - std::floor(c)) : 1;
    }
};

struct Counts {
    Int outside = 0, band = 0;
};

// From one end of the row inward.
Counts Count(const Axis& axis, double c, double step) {
    Counts counts;
    const auto last = static_cast<double>(axis.extent - 1);
    if (step > 0) {
        for (; c <= -1; c += step) ++counts.outside;
        for (; c < 0; c += step) ++counts.band;
    } else {
        for (; c >= last + 1; c += step) ++counts.outside;
        for (; c >= last; c += step) ++counts.band;
    }
    return counts;
}

Counts CountEnd(const Axis& axis) {
    Counts counts = Count(axis, axis.end, -axis.step);
    if (counts.outside > 0)
        --counts.outside;
    else if (counts.band > 0)
        --counts.band;
    return counts;
}

Int Blend(Int a, Int b, Int weight) {
    return a + static_cast<Int>(std::floor(static_cast<double>((b - a) * weight) / 256));
}

class Warp {
  public:
    Warp(const ImageBuffer& dst, const ImageBuffer& src)
        : dst_(dst), src_(src), to_(dst.bitsPerPixel / 8), from_(src.bitsPerPixel / 8) {}

    void Row(const Axis& u, const Axis& v, Int y) const {
        Int outside[2] = {0, 0}, skip[2] = {0, 0};  // at the left, at the right
        for (const Axis* axis : {&u, &v}) {
            if (axis->Rests()) continue;
            const Counts counts[2] = {Count(*axis, axis->start, axis->step), CountEnd(*axis)};
            for (int side = 0; side < 2; ++side) {
                outside[side] = std::max(outside[side], counts[side].outside);
                skip[side] = std::max(skip[side], counts[side].outside + counts[side].band);
            }
        }
        if (skip[0] + skip[1] > dst_.width) return;
        for (const Axis* axis : {&u, &v}) {
            const Int fixed = axis->Fixed(skip[0]);
            if (axis->Rests() && (fixed < 0 || fixed >= axis->extent << 16)) return;
        }
        for (Int x = outside[0]; x < dst_.width - outside[1]; ++x) {
            const bool left = x < skip[0], right = x >= dst_.width - skip[1];
            for (int k = 0; k < to_; ++k) {
                std::uint8_t& byte = dst_.data[y * dst_.stride + x * to_ + k];
                if (k >= from_)
                    byte = 0;
                else if (left || right)
                    byte = Faded(u, v, left ? outside[0] : dst_.width - skip[1], x, k);
                else
                    byte = Interpolated(u, v, skip[0], x, k);
            }
        }
    }

  private:
    Int Source(Int column, Int row, int k) const {
        column = std::clamp(column, Int{0}, Int{src_.width} - 1);
        row = std::clamp(row, Int{0}, Int{src_.height} - 1);
        return src_.data[row * src_.stride + column * from_ + k];
    }
    std::uint8_t Faded(const Axis& u, const Axis& v, Int band, Int x, int k) const {
        const double coverage = u.Coverage(x) * v.Coverage(x);
        const auto level = static_cast<double>(Source(u.PixelAt(band), v.PixelAt(band), k));
        return static_cast<std::uint8_t>(level * coverage);
    }
    std::uint8_t Interpolated(const Axis& u, const Axis& v, Int first, Int x, int k) const {
        const auto fixed = [&](const Axis& axis) {
            return axis.Fixed(first) + (x - first) * static_cast<Int>(axis.step * 65536.0);
        };
        const Int column = fixed(u) >> 16, row = fixed(v) >> 16;
        const Int u_weight = (fixed(u) & 0xFFFF) / 256, v_weight = (fixed(v) & 0xFFFF) / 256;
        const auto across = [&](Int r) {
            return Blend(Source(column, r, k), Source(column + 1, r, k), u_weight);
        };
        return static_cast<std::uint8_t>(Blend(across(row), across(row + 1), v_weight));
    }

    const ImageBuffer &dst_, &src_;
    int to_, from_;
};

void WarpAll(const ImageBuffer& dst, const ImageBuffer& src, Turn turn) {
    const int to = dst.bitsPerPixel / 8, from = src.bitsPerPixel / 8;
    if (to < 3 || to > 4 || from < 3 || from > 4) return;
    if (dst.width < 2 || dst.height < 2 || src.width < 2 || src.height < 2) return;
    const double c = std::abs(turn.cosine) < 0.0001f ? 0 : turn.cosine, s = turn.sine;
    const double left = -0.5 * dst.width, top = -0.5 * dst.height;
    Axis u = {(left * c + top * -s) + 0.5 * src.width, c, 0, src.width};
    Axis v = {(left * s + top * c) + 0.5 * src.height, s, 0, src.height};
    u.end = u.start + dst.width * c;
    v.end = v.start + dst.width * s;
    const Warp warp(dst, src);
    for (Int y = 0; y < dst.height; ++y) {
        warp.Row(u, v, y);
        u.start += -s, u.end += -s;
        v.start += c, v.end += c;
    }
}

void CopyEdges(const ImageBuffer& dst, const ImageBuffer& src, int angle) {
    const int bytes = dst.bitsPerPixel / 8;
    const Int w = dst.width, h = dst.height, step = src.stride;
    const auto copy = [&](Int to, Int from) { std::copy_n(src.data + from, bytes, dst.data + to); };
    for (Int i = 0; i < w; ++i) {
        if (angle == 90) copy(i * bytes, (h - 1) * bytes + i * step);
        if (angle == 180) copy(i * bytes, (w - 1) * bytes + (h - 1) * step - i * bytes);
        if (angle == 270) copy(i * bytes, (w - 1 - i) * step);
    }
    for (Int j = 0; j < h; ++j) {
        if (angle == 180) copy(j * step, (w - 1) * bytes + (h - 1) * step - j * step);
        if (angle == 270) copy(j * dst.stride, (w - 1) * step + j * bytes);
    }
}

void TurnPlane(std::uint8_t* dst, const std::uint8_t* src, Int w, Int h, int angle) {
    for (Int r = 0; r < h; ++r)
        for (Int c = 0; c < w; ++c) {
            const std::uint8_t sample = src[r * w + c];
            if (angle == 90) dst[c * h + (h - 1 - r)] = sample;
            if (angle == 180) dst[(h - 1 - r) * w + (w - 1 - c)] = sample;
            if (angle == 270) dst[(w - 1 - c) * h + r] = sample;
        }
}

}  // namespace

void RotateByReference(const ImageBuffer& dst, const ImageBuffer& src, Turn turn) {
    if (src.format != PXB_YV12 && src.format != PXB_I420) {
        WarpAll(dst, src, turn);
        return CopyEdges(dst, src, turn.angle);
    }
    const Int to = Int{dst.stride} * dst.height, from = Int{src.stride} * src.height;
    const Int w = src.width, h = src.height;
    TurnPlane(dst.data, src.data, w, h, turn.angle);
    for (const Int quarters : {4, 5})
        TurnPlane(dst.data + to * quarters / 4, src.data + from * quarters / 4, w / 2, h / 2,
                  turn.angle);
}
