#include "reference.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

using Byte = std::uint8_t;
using Int = std::int64_t;

struct Bgr {
    Int b, g, r;
};

// ---- Colour arithmetic ----

Int FloorDivide(Int a, Int b) {
    return a / b - (a % b < 0);
}

Byte Clamp(Int value) {
    return static_cast<Byte>(std::clamp<Int>(value, 0, 255));
}

// 13 bits are the processor without SIMD, 6 bits those with it.
Bgr ToRgb(Int y, Int u, Int v, int bits) {
    y -= 16, u -= 128, v -= 128;
    if (bits == 6)
        return {FloorDivide(74 * y + 129 * u, 64), FloorDivide(74 * y - 25 * u - 52 * v, 64),
                FloorDivide(74 * y + 102 * v, 64)};
    return {FloorDivide(9535 * y + 16531 * u, 8192),
            FloorDivide(9535 * y - 3203 * u - 6660 * v, 8192),
            FloorDivide(9535 * y + 13074 * v, 8192)};
}

Byte LumaOf(const Bgr& c) {
    return static_cast<Byte>((66 * c.r + 129 * c.g + 25 * c.b) / 256 + 16);
}

// Of the sum of `count` pixels.
Byte BlueDifference(const Bgr& sum, Int count) {
    return static_cast<Byte>(FloorDivide(112 * sum.b - 74 * sum.g - 38 * sum.r, 256 * count) + 128);
}

Byte RedDifference(const Bgr& sum, Int count) {
    return static_cast<Byte>(FloorDivide(112 * sum.r - 94 * sum.g - 18 * sum.b, 256 * count) + 128);
}

// ---- Layouts ----

bool IsRgb(const ImageBuffer& image) {
    return image.format == PXB_RGB24 || image.format == PXB_RGB32;
}

bool Is420(const ImageBuffer& image) {
    return image.format == PXB_YV12 || image.format == PXB_I420 || image.format == PXB_NV12;
}

// `lean`: how many pixels further left a row starts, in conversions of odd width that demand it.
struct RgbLayout {
    Byte* data;
    Int stride, bytes;

    explicit RgbLayout(const ImageBuffer& image)
        : data(image.data), stride(image.stride), bytes(image.format == PXB_RGB24 ? 3 : 4) {}

    Byte* At(Int x, Int row, Int lean = 0) const {
        return data + row * stride + bytes * (x - lean);
    }
};

struct YuvLayout {
    Byte *y, *u, *v;
    Int y_stride, y_step, chroma_stride, chroma_step;
    Int chroma_lean;            // bytes for each pixel of lean; planes of chroma do not lean
    Int columns = 1, rows = 1;  // pixels that share a chroma sample

    Byte* Y(Int x, Int row, Int lean = 0) const { return y + row * y_stride + y_step * (x - lean); }
    Int Chroma(Int x, Int row, Int lean = 0) const {  // offset in both planes
        return row / rows * chroma_stride + x / columns * chroma_step - chroma_lean * lean;
    }
};

// Planes are placed as those of an image of `height` rows.
YuvLayout LayoutOf420(const ImageBuffer& image, Int height) {
    const Int stride = image.stride;
    Byte *const first = image.data + stride * height, *const second = first + stride * height / 4;
    if (image.format == PXB_NV12)
        return {image.data, first, first + 1, stride, 1, stride, 2, 0, 2, 2};
    if (image.format == PXB_YV12)
        return {image.data, second, first, stride, 1, stride / 2, 1, 0, 2, 2};
    return {image.data, first, second, stride, 1, stride / 2, 1, 0, 2, 2};
}

YuvLayout LayoutOfYuy2(const ImageBuffer& image, Int stride) {
    return {image.data, image.data + 1, image.data + 3, stride, 2, stride, 4, 2, 2, 1};
}

YuvLayout LayoutOf422(const ImageBuffer& image, Int luma_stride, Int dst_width, Int height) {
    Byte* const u = image.data + dst_width * height;
    return {image.data, u, u + dst_width / 2 * height, luma_stride, 1, luma_stride / 2, 1, 0, 2, 1};
}

YuvLayout LayoutOfAyuv(const ImageBuffer& image) {
    const Int stride = image.stride;
    return {image.data + 1, image.data + 2, image.data + 3, stride, 4, stride, 4, 0, 1, 1};
}

struct Area {
    Int width, height;

    Area(const ImageBuffer& a, const ImageBuffer& b)
        : width(std::min(a.width, b.width)), height(std::min(a.height, b.height)) {}

    Int Columns(const YuvLayout& yuv) const { return width / yuv.columns * yuv.columns; }
    Int Rows(const YuvLayout& yuv) const { return height / yuv.rows * yuv.rows; }
    // Each further row (4:2:0: pair of rows) starts one pixel further left if columns pair up and
    // their number is odd.
    Int Lean(const YuvLayout& yuv, Int row) const {
        return (width - Columns(yuv)) * (row / yuv.rows);
    }
};

YuvLayout LayoutBesideRgb(const ImageBuffer& yuv, const ImageBuffer& rgb, const Area& area) {
    switch (yuv.format) {
        case PXB_YUY2:
            return LayoutOfYuy2(yuv, yuv.stride);
        case PXB_AYUV32:
            return LayoutOfAyuv(yuv);
        case PXB_YUV422:
            return LayoutOf422(yuv, area.width, rgb.width, area.height);
        default:
            return LayoutOf420(yuv, yuv.height);
    }
}

// ---- Conversions ----

int BitsOf(const ImageBuffer& dst, const ImageBuffer& src, Int x, Int width, Processor processor) {
    if (src.format == PXB_YUY2 && dst.format == PXB_RGB24) return x < width / 16 * 16 ? 6 : 13;
    const bool has_mmx_kernel =
        src.format == PXB_YUY2 || src.format == PXB_I420 || src.format == PXB_YV12;
    return processor >= (has_mmx_kernel ? Processor::kMmx : Processor::kSse2) ? 6 : 13;
}

void YuvToRgb(const ImageBuffer& dst, const ImageBuffer& src, Processor processor) {
    const Area area(dst, src);
    const YuvLayout yuv = LayoutBesideRgb(src, dst, area);
    const RgbLayout rgb(dst);
    for (Int row = 0; row < area.Rows(yuv); ++row)
        for (Int x = 0; x < area.Columns(yuv); ++x) {
            const Int lean = area.Lean(yuv, row), chroma = yuv.Chroma(x, row, lean);
            const Byte* const y = yuv.Y(x, row, lean);
            const Bgr c =
                ToRgb(*y, yuv.u[chroma], yuv.v[chroma], BitsOf(dst, src, x, area.width, processor));
            Byte* const out = rgb.At(x, row, lean);
            out[0] = Clamp(c.b), out[1] = Clamp(c.g), out[2] = Clamp(c.r);
            if (rgb.bytes == 4) out[3] = src.format == PXB_AYUV32 ? y[-1] : 0;
        }
}

void RgbToYuv(const ImageBuffer& dst, const ImageBuffer& src) {
    const Area area(dst, src);
    const YuvLayout yuv = LayoutBesideRgb(dst, src, area);
    const RgbLayout rgb(src);
    for (Int row = 0; row < area.Rows(yuv); row += yuv.rows)
        for (Int x = 0; x < area.Columns(yuv); x += yuv.columns) {
            const Int lean = area.Lean(yuv, row), chroma = yuv.Chroma(x, row, lean);
            Bgr sum = {0, 0, 0};
            for (Int i = 0; i < yuv.rows * yuv.columns; ++i) {
                const Int px = x + i % yuv.columns, py = row + i / yuv.columns;
                const Byte* const in = rgb.At(px, py, lean);
                *yuv.Y(px, py, lean) = LumaOf({in[0], in[1], in[2]});
                sum = {sum.b + in[0], sum.g + in[1], sum.r + in[2]};
            }
            yuv.u[chroma] = BlueDifference(sum, yuv.rows * yuv.columns);
            yuv.v[chroma] = RedDifference(sum, yuv.rows * yuv.columns);
            if (dst.format == PXB_AYUV32) yuv.Y(x, row)[-1] = rgb.At(x, row)[3];
        }
}

// Between YUV layouts. Where rows share chroma in the destination only, it is their rounded mean.
void Reshuffle(const YuvLayout& to, const YuvLayout& from, Int width, Int height) {
    const Int shared_rows = std::max(to.rows, from.rows);
    for (Int row = 0; row < height / shared_rows * shared_rows; ++row)
        for (Int x = 0; x < width / 2 * 2; ++x) {
            const Int above = from.Chroma(x, row / to.rows * to.rows);
            const Int below = from.Chroma(x, row / to.rows * to.rows + to.rows - 1);
            *to.Y(x, row) = *from.Y(x, row);
            to.u[to.Chroma(x, row)] = static_cast<Byte>((from.u[above] + from.u[below] + 1) / 2);
            to.v[to.Chroma(x, row)] = static_cast<Byte>((from.v[above] + from.v[below] + 1) / 2);
        }
}

void YuvToYuv(const ImageBuffer& dst, const ImageBuffer& src) {
    const Area area(dst, src);
    const Int tight = area.width / 2 * 2;  // rows of both partners of planar 4:2:2 have no gaps
    if (dst.format == PXB_YUV422)
        return Reshuffle(LayoutOf422(dst, tight, dst.width, area.height),
                         LayoutOfYuy2(src, 2 * tight), area.width, area.height);
    if (src.format == PXB_YUV422)
        return Reshuffle(LayoutOfYuy2(dst, 2 * tight),
                         LayoutOf422(src, tight, dst.width, area.height), area.width, area.height);

    // A copy between 4:2:0 images places the destination's planes by the common height, and copies
    // the luma of odd columns and rows too.
    const bool copy = Is420(dst) && Is420(src);
    const YuvLayout to = Is420(dst) ? LayoutOf420(dst, copy ? area.height : dst.height)
                         : dst.format == PXB_AYUV32 ? LayoutOfAyuv(dst)
                                                    : LayoutOfYuy2(dst, dst.stride);
    const YuvLayout from =
        Is420(src) ? LayoutOf420(src, src.height) : LayoutOfYuy2(src, src.stride);
    Reshuffle(to, from, area.width, area.height);
    for (Int row = 0; copy && row < area.height; ++row)
        std::memcpy(to.Y(0, row), from.Y(0, row), static_cast<std::size_t>(area.width));
}

void CopyRows(const ImageBuffer& dst, const ImageBuffer& src, Int bytes_per_pixel) {
    const Area area(dst, src);
    for (Int row = 0; row < area.height; ++row)
        std::memcpy(dst.data + row * dst.stride, src.data + row * src.stride,
                    static_cast<std::size_t>(area.width * bytes_per_pixel));
}

void RgbToRgb(const ImageBuffer& dst, const ImageBuffer& src) {
    const Area area(dst, src);
    const RgbLayout to(dst), from(src);
    for (Int row = 0; row < area.height; ++row)
        for (Int x = 0; x < area.width; ++x) {
            std::memcpy(to.At(x, row), from.At(x, row), 3);
            if (to.bytes == 4) to.At(x, row)[3] = from.bytes == 4 ? from.At(x, row)[3] : 0;
        }
}

// Walks the size of the source; where the widths differ, rows of the destination move.
void GreyToRgb24(const ImageBuffer& dst, const ImageBuffer& src) {
    const Int step = dst.stride + 3 * (Int{src.width} - dst.width);
    for (Int row = 0; row < src.height; ++row)
        for (Int x = 0; x < src.width; ++x)
            std::memset(dst.data + row * step + 3 * x, src.data[row * src.stride + x], 3);
}

}  // namespace

void ConvertByReference(const ImageBuffer& dst, const ImageBuffer& src, Processor processor) {
    if (src.format == PXB_RGB8) return GreyToRgb24(dst, src);
    if (src.format == PXB_YUY2 && dst.format == PXB_YUY2) return CopyRows(dst, src, 2);
    if (IsRgb(dst) && IsRgb(src)) return RgbToRgb(dst, src);
    if (IsRgb(dst)) return YuvToRgb(dst, src, processor);
    if (IsRgb(src)) return RgbToYuv(dst, src);
    YuvToYuv(dst, src);
}
