#include "scaling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

namespace {

using Byte = std::uint8_t;
using Int = std::int64_t;

// ---- One axis: which samples make an entry of the destination ----

enum class Method {
    kNothing,
    kNearest,
    kBilinear,
    kFading,
    kSpline,
};

struct Entry {
    enum Kind {
        kAlone,   // the first sample
        kBlend,   // of the first two, by weights[0] of the second
        kFade,    // of black and the first, by weights[0] of the first
        kSpline,  // of four, the first of them maybe outside the extent
    } kind;
    Int first;
    std::array<int, 4> weights = {};
};

constexpr double kTiny = 1e-9;

int Weight(double fraction) {
    const double rounded = fraction * 255 + 0.5;
    return static_cast<int>(rounded);
}

Entry Nearest(double position, Int extent) {
    return {Entry::kAlone, std::clamp<Int>(static_cast<Int>(position + kTiny), 0, extent - 1)};
}

Entry Interior(double position, Int index) {
    const double fraction = position - static_cast<double>(index);
    return {Entry::kBlend, index, {0 < fraction ? Weight(fraction) : 0}};
}

// In rows of 24-bit pixels (`tight`) the last two columns are the trailing edge.
Entry Bilinear(double position, double step, Int extent, bool tight) {
    const Int last = extent - 1, index = static_cast<Int>(position + kTiny);
    if (position < -step || index < 0) return {Entry::kAlone, 0};
    if (static_cast<double>(last) + step < position || index >= last - tight)
        return {Entry::kAlone, last};
    return Interior(position, index);
}

Entry Fading(double position, double step, Int extent) {
    const auto last = static_cast<double>(extent - 1);
    const Int index = static_cast<Int>(position + kTiny);
    if (position < -step) return {Entry::kFade, 0, {0}};
    if (last + step < position) return {Entry::kFade, extent - 1, {0}};
    if (position < 0) return {Entry::kFade, 0, {Weight((position + step) / step)}};
    if (index < extent - 1) return Interior(position, index);
    return {Entry::kFade, extent - 1, {std::max(255 - Weight((position - last) / step), 0)}};
}

// The weights of the cubic B-spline at a fraction t. Their sixfolds are exact at whole positions,
// where two of them lie half-way between two numbers; nowhere else does rounding of t matter.
Entry Spline(double position) {
    const Int first = static_cast<Int>(std::floor(position + kTiny));
    double t = position - static_cast<double>(first);
    if (std::abs(t) < 1e-9) t = 0;
    const double s = 1 - t, sixfold[] = {s * s * s, 4 - 3 * t * t * (2 - t),
                                         4 - 3 * s * s * (2 - s), t * t * t};
    Entry entry = {Entry::kSpline, first};
    for (int i = 0; i < 4; ++i) entry.weights[i] = static_cast<int>((85 * sixfold[i] + 1) / 2);
    *std::max_element(entry.weights.begin(), entry.weights.end()) +=
        255 - std::accumulate(entry.weights.begin(), entry.weights.end(), 0);
    return entry;
}

std::vector<Entry> Axis(Method method, Int count, Int extent, bool tight = false) {
    std::vector<Entry> axis;
    const double step = static_cast<double>(extent) / static_cast<double>(count), half = step / 2;
    double position = half;
    if (method == Method::kBilinear || method == Method::kFading) position = half - 0.5;
    if (method == Method::kSpline) position = half - 1.5;
    for (Int i = 0; i < count; ++i, position = position + step) {
        if (method == Method::kNearest) axis.push_back(Nearest(position, extent));
        if (method == Method::kBilinear) axis.push_back(Bilinear(position, step, extent, tight));
        if (method == Method::kFading) axis.push_back(Fading(position, step, extent));
        if (method == Method::kSpline) axis.push_back(Spline(position));
    }
    return axis;
}

// ---- One sample ----

int Blend(int a, int b, int weight) {
    const int difference = (b - a) * weight;
    return a + difference / 256 - (difference % 256 < 0);
}

// `sample(i)` for i from 0 on, below the extent.
template <class Sample>
int Evaluate(const Entry& entry, Int extent, const Sample& sample) {
    if (entry.kind == Entry::kAlone) return sample(entry.first);
    if (entry.kind == Entry::kFade) return Blend(0, sample(entry.first), entry.weights[0]);
    if (entry.kind == Entry::kBlend)
        return Blend(sample(entry.first), sample(entry.first + 1), entry.weights[0]);
    int sum = 127;
    for (int i = 0; i < 4; ++i)
        sum += entry.weights[i] * sample(std::clamp<Int>(entry.first + i, 0, extent - 1));
    return sum / 255;
}

// ---- One plane or channel ----

struct Extent {
    Int width, height;
};

// Samples of one kind: bytes from one to the next, and from row to row.
struct Samples {
    Byte* data;
    Int step, stride;
    Extent extent;
};

struct Axes {
    std::vector<Entry> columns, rows;
};

Axes AxesOf(const Samples& dst, const Samples& src, Method method, bool tight = false) {
    return {Axis(method, dst.extent.width, src.extent.width, tight),
            Axis(method, dst.extent.height, src.extent.height)};
}

void Scale(const Samples& dst, const Samples& src, const Axes& axes) {
    Byte* row = dst.data;
    for (const Entry& down : axes.rows) {
        Byte* out = row;
        for (const Entry& across : axes.columns) {
            *out = static_cast<Byte>(Evaluate(across, src.extent.width, [&](Int x) {
                return Evaluate(down, src.extent.height, [&](Int y) {
                    return int{src.data[y * src.stride + x * src.step]};
                });
            }));
            out += dst.step;
        }
        row += dst.stride;
    }
}

// ---- Which method ----

bool HasExtent(const Extent& a, const Extent& b, Int wanted) {
    return a.width == wanted || a.height == wanted || b.width == wanted || b.height == wanted;
}

bool IsEmpty(const Extent& a, const Extent& b) {
    return std::min({a.width, a.height, b.width, b.height}) <= 0;
}

// Of pixels of `to` and `from` bytes. Extents of 0 are seen elsewhere.
Method MethodFor(std::int32_t mode, const Extent& dst, const Extent& src, Int to, Int from) {
    const bool halves = src.width >= 2 * dst.width && src.height >= 2 * dst.height;
    const bool shrinks = src.width > dst.width && src.height > dst.height;
    if (HasExtent(dst, src, 1) || mode == 0) return Method::kNearest;
    if (mode == 2 || (mode == 4 && !halves)) return Method::kFading;
    if (to != from || (mode != 6 && !((mode == 3 || mode == 4) && halves)))
        return Method::kBilinear;
    if (mode == 6 && shrinks) return Method::kSpline;
    if (to != 1) return Method::kNothing;
    return mode == 6 ? Method::kBilinear : Method::kSpline;
}

// ---- Layouts ----

void ScaleInterleaved(Samples dst, Samples src, std::int32_t mode) {
    const Int to = dst.step, from = src.step;
    const bool known = to == from ? to == 1 || to == 3 || to == 4 : to + from == 7 && to * from > 0;
    if (!known || IsEmpty(dst.extent, src.extent)) return;
    const Method method = MethodFor(mode, dst.extent, src.extent, to, from);
    if (method == Method::kNothing) return;
    const Axes axes = AxesOf(dst, src, method, from == 3);
    for (Int i = 0; i < to; ++i, ++dst.data, ++src.data) {
        if (i < from) {
            Scale(dst, src, axes);
            continue;
        }
        for (Int y = 0; y < dst.extent.height; ++y)
            for (Int x = 0; x < dst.extent.width; ++x) dst.data[y * dst.stride + 4 * x] = 0;
    }
}

void ScalePlanar(const std::array<Samples, 3>& dst, const std::array<Samples, 3>& src,
                 std::int32_t mode) {
    const Method method = MethodFor(mode, dst[0].extent, src[0].extent, 1, 1);
    for (int plane = 0; plane < 3; ++plane) {
        const Extent to = dst[plane].extent, from = src[plane].extent;
        if (IsEmpty(to, from) || dst[plane].stride < 0 || src[plane].stride < 0) continue;
        const Method here = HasExtent(to, from, 1) ? Method::kNearest : method;
        Scale(dst[plane], src[plane], AxesOf(dst[plane], src[plane], here));
    }
}

void ScalePacked(const Samples& dst, const Samples& src) {
    const auto chroma = [](const Samples& all, int offset) {
        return Samples{all.data + offset, 4, all.stride, {all.extent.width / 2, all.extent.height}};
    };
    if (IsEmpty(chroma(dst, 1).extent, chroma(src, 1).extent)) return;
    // An odd last column of the destination counts in the step, but is not written.
    Axes luma = AxesOf(dst, src, Method::kBilinear);
    if (luma.columns.size() % 2) luma.columns.pop_back();
    Scale(dst, src, luma);
    const Axes both = AxesOf(chroma(dst, 1), chroma(src, 1), Method::kBilinear);
    for (const int offset : {1, 3}) Scale(chroma(dst, offset), chroma(src, offset), both);
}

Extent ExtentOf(const Rect& rect) {
    return {Int{rect.right} - rect.left, Int{rect.bottom} - rect.top};
}

// `bits`: of a pixel, for the column where the rectangle starts.
Samples PackedSamples(const ImageBuffer& image, const Rect& rect, Int bits, Int step) {
    return {image.data + Int{image.stride} * rect.top + bits * rect.left / 8, step, image.stride,
            ExtentOf(rect)};
}

// Of both planar layouts alike: chroma planes in the order of memory.
std::array<Samples, 3> PlanarSamples(const ImageBuffer& image, const Rect& rect) {
    const Int stride = image.stride, luma = stride * image.height, half = stride / 2;
    const Extent whole = ExtentOf(rect), halved = {whole.width / 2, whole.height / 2};
    Byte* const first = image.data + luma + half * (rect.top / 2) + rect.left / 2;
    return {{{image.data + stride * rect.top + rect.left, 1, stride, whole},
             {first, 1, half, halved},
             {first + luma / 4, 1, half, halved}}};
}

bool IsInside(const Rect& rect, const ImageBuffer& image) {
    return rect.top >= 0 && rect.left >= 0 && rect.right <= image.width &&
           rect.bottom <= image.height && rect.top <= rect.bottom && rect.left <= rect.right;
}

std::int32_t ScaleRectangles(const ImageBuffer& dst, const ImageBuffer& src,
                             const std::int32_t* mode, const Rect& to, const Rect& from) {
    const Int bits = dst.bitsPerPixel;  // of the source, too
    switch (dst.format) {
        case PXB_RGB24:
        case PXB_RGB32:
        case PXB_RGB8:
            ScaleInterleaved(PackedSamples(dst, to, bits, dst.bitsPerPixel / 8),
                             PackedSamples(src, from, bits, src.bitsPerPixel / 8), *mode);
            return PXB_SUCCESS;
        case PXB_YV12:
        case PXB_I420:
            ScalePlanar(PlanarSamples(dst, to), PlanarSamples(src, from), *mode);
            return PXB_SUCCESS;
        case PXB_YUY2:
            ScalePacked(PackedSamples(dst, to, 16, 2), PackedSamples(src, from, 16, 2));
            return PXB_SUCCESS;
        case PXB_YUV422:
            return PXB_UNSUPPORTED;
        default:
            return PXB_BAD_ARGUMENT;
    }
}

Rect Whole(const ImageBuffer& image) {
    return {0, 0, image.width, image.height};
}

bool IsPair(const ImageBuffer& dst, const ImageBuffer& src) {
    return dst.format == src.format && dst.data && src.data;
}

}  // namespace

std::int32_t ResizeByReference(const ImageBuffer& dst, const ImageBuffer& src,
                               const std::int32_t* mode) {
    if (!IsPair(dst, src)) return PXB_BAD_ARGUMENT;
    const std::int32_t result = ScaleRectangles(dst, src, mode, Whole(dst), Whole(src));
    return dst.alpha && src.alpha ? ResizeByReference(*dst.alpha, *src.alpha, mode) : result;
}

std::int32_t ResizeExByReference(const ImageBuffer& dst, const ImageBuffer& src,
                                 const std::int32_t* mode, const Rect* dst_rect,
                                 const Rect* src_rect) {
    if (!IsPair(dst, src)) return PXB_BAD_ARGUMENT;
    const Rect to = dst_rect ? *dst_rect : Whole(dst), from = src_rect ? *src_rect : Whole(src);
    if (!IsInside(to, dst) || !IsInside(from, src)) return PXB_BAD_ARGUMENT;
    const std::int32_t result = ScaleRectangles(dst, src, mode, to, from);
    if (!dst.alpha || !src.alpha) return result;
    return ResizeExByReference(*dst.alpha, *src.alpha, mode, &to, &from);
}
