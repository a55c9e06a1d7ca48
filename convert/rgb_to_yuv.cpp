// RGB to YUV in plain code.
#include "convert/rgb_to_yuv.h"

#include "convert/drifting_rows.h"

namespace pxb {
namespace {

// One pixel, or the sum of several.
struct Bgr {
    explicit Bgr(const Byte* pixel) : b(pixel[0]), g(pixel[1]), r(pixel[2]) {}
    Bgr(std::int32_t b_, std::int32_t g_, std::int32_t r_) : b(b_), g(g_), r(r_) {}
    Bgr operator+(const Bgr& other) const { return {b + other.b, g + other.g, r + other.r}; }
    std::int32_t b, g, r;
};

Byte Luma(const Bgr& pixel) {
    return static_cast<Byte>(((66 * pixel.r + 129 * pixel.g + 25 * pixel.b) >> 8) + 16);
}

// U and V of a sum of pixels.
template <int kShift>
Byte ChromaU(const Bgr& sum) {
    return static_cast<Byte>(((112 * sum.b - 74 * sum.g - 38 * sum.r) >> kShift) + 128);
}

template <int kShift>
Byte ChromaV(const Bgr& sum) {
    return static_cast<Byte>(((112 * sum.r - 94 * sum.g - 18 * sum.b) >> kShift) + 128);
}

// Writes the luma of two neighbouring pixels, kLumaStep bytes apart, and returns their sum.
template <int kBytesPerPixel, int kLumaStep>
Bgr LumaOfPair(Byte* y, const Byte* src) {
    const Bgr left(src), right(src + kBytesPerPixel);
    y[0] = Luma(left);
    y[kLumaStep] = Luma(right);
    return left + right;
}

// kChromaStep: bytes between neighbouring samples of U, and of V.
template <int kBytesPerPixel, int kChromaStep>
void ConvertTo420(Byte* y, Byte* u, Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                  const Byte* src, std::int32_t src_stride, std::int32_t width,
                  std::int32_t height) {
    ForRowPairsOfPackedAnd420<kBytesPerPixel>(
        src, src_stride, y, u, v, y_stride, chroma_stride, width, height,
        [=](const Byte* src0, const Byte* src1, Byte* y0, Byte* y1, Byte* pu, Byte* pv) {
            for (int j = 0; j < width / 2; ++j) {
                const int x = 2 * kBytesPerPixel * j;
                const Bgr block = LumaOfPair<kBytesPerPixel, 1>(y0 + 2 * j, src0 + x) +
                                  LumaOfPair<kBytesPerPixel, 1>(y1 + 2 * j, src1 + x);
                pu[kChromaStep * j] = ChromaU<10>(block);
                pv[kChromaStep * j] = ChromaV<10>(block);
            }
        });
}

template <int kBytesPerPixel>
void ConvertToYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
                   std::int32_t width, std::int32_t height) {
    ForDriftingRows<2, kBytesPerPixel>(
        dst, dst_stride, src, src_stride, width, height, [=](Byte* to, const Byte* from) {
            for (int j = 0; j < width / 2; ++j, to += 4, from += 2 * kBytesPerPixel) {
                const Bgr pair = LumaOfPair<kBytesPerPixel, 2>(to, from);
                to[1] = ChromaU<9>(pair);
                to[3] = ChromaV<9>(pair);
            }
        });
}

}  // namespace

namespace plain {

void ConvertRgb24ToYuv420(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                          std::int32_t chroma_stride, const Byte* src, std::int32_t src_stride,
                          std::int32_t width, std::int32_t height) {
    ConvertTo420<3, 1>(y, u, v, y_stride, chroma_stride, src, src_stride, width, height);
}

void ConvertRgb32ToYuv420(Byte* y, Byte* u, Byte* v, std::int32_t y_stride,
                          std::int32_t chroma_stride, const Byte* src, std::int32_t src_stride,
                          std::int32_t width, std::int32_t height) {
    ConvertTo420<4, 1>(y, u, v, y_stride, chroma_stride, src, src_stride, width, height);
}

void ConvertRgb32ToNv12(Byte* y, Byte* uv, std::int32_t y_stride, std::int32_t uv_stride,
                        const Byte* src, std::int32_t src_stride, std::int32_t width,
                        std::int32_t height) {
    ConvertTo420<4, 2>(y, uv, uv + 1, y_stride, uv_stride, src, src_stride, width, height);
}

void ConvertRgb24ToYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src,
                        std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ConvertToYuy2<3>(dst, dst_stride, src, src_stride, width, height);
}

void ConvertRgb32ToYuy2(Byte* dst, std::int32_t dst_stride, const Byte* src,
                        std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ConvertToYuy2<4>(dst, dst_stride, src, src_stride, width, height);
}

void ConvertRgb32ToAyuv32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        for (std::int32_t x = 0; x < width; ++x, to += 4, from += 4) {
            const Bgr pixel(from);
            to[0] = from[3];
            to[1] = Luma(pixel);
            to[2] = ChromaU<8>(pixel);
            to[3] = ChromaV<8>(pixel);
        }
    });
}

}  // namespace plain
}  // namespace pxb
