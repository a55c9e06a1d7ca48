// YUV to RGB in plain 13-bit fixed point, from tables, and the kernel that mixes both arithmetics.
#include "convert/yuv_to_rgb.h"

#include "convert/drifting_rows.h"
#include "convert/yuv_to_rgb_tables.h"

namespace pxb {
namespace {

constexpr YuvToRgbTables kTables = BuildYuvToRgbTables();

Byte ClampToByte(std::int32_t value) {
    return static_cast<Byte>(value < 0 ? 0 : value > 255 ? 255 : value);
}

// What one chroma pair adds to the luma term of each channel.
struct Chroma {
    Chroma(Byte u, Byte v)
        : blue(kTables.u_to_blue[u]),
          green(-(kTables.v_to_green[v] + kTables.u_to_green[u])),
          red(kTables.v_to_red[v]) {}
    std::int32_t blue, green, red;
};

template <int kBytesPerPixel>
void Shade(Byte* dst, Byte y, const Chroma& chroma) {
    const std::int32_t luma = kTables.luma[y];
    dst[0] = ClampToByte((luma + chroma.blue) >> 13);
    dst[1] = ClampToByte((luma + chroma.green) >> 13);
    dst[2] = ClampToByte((luma + chroma.red) >> 13);
    if (kBytesPerPixel == 4) dst[3] = 0;
}

template <int kBytesPerPixel>
void ShadePair(Byte* dst, Byte y_left, Byte y_right, const Chroma& chroma) {
    Shade<kBytesPerPixel>(dst, y_left, chroma);
    Shade<kBytesPerPixel>(dst + kBytesPerPixel, y_right, chroma);
}

// kChromaStep: bytes between neighbouring samples of U, and of V.
template <int kBytesPerPixel, int kChromaStep>
void Convert420(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u, const Byte* v,
                std::int32_t y_stride, std::int32_t chroma_stride, std::int32_t width,
                std::int32_t height) {
    ForRowPairsOfPackedAnd420<kBytesPerPixel>(
        dst, dst_stride, y, u, v, y_stride, chroma_stride, width, height,
        [=](Byte* d0, Byte* d1, const Byte* y0, const Byte* y1, const Byte* pu, const Byte* pv) {
            for (int j = 0; j < width / 2; ++j) {
                const Chroma chroma(pu[kChromaStep * j], pv[kChromaStep * j]);
                ShadePair<kBytesPerPixel>(d0 + 2 * kBytesPerPixel * j, y0[2 * j], y0[2 * j + 1],
                                          chroma);
                ShadePair<kBytesPerPixel>(d1 + 2 * kBytesPerPixel * j, y1[2 * j], y1[2 * j + 1],
                                          chroma);
            }
        });
}

template <int kBytesPerPixel>
void ConvertYuy2Pairs(Byte* dst, const Byte* src, int first, int end) {
    for (int j = first; j < end; ++j) {
        const Byte* const quad = src + 4 * j;
        ShadePair<kBytesPerPixel>(dst + 2 * kBytesPerPixel * j, quad[0], quad[2],
                                  Chroma(quad[1], quad[3]));
    }
}

}  // namespace

namespace plain {

void ConvertYuv420ToRgb24(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                          const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                          std::int32_t width, std::int32_t height) {
    Convert420<3, 1>(dst, dst_stride, y, u, v, y_stride, chroma_stride, width, height);
}

void ConvertYuv420ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* u,
                          const Byte* v, std::int32_t y_stride, std::int32_t chroma_stride,
                          std::int32_t width, std::int32_t height) {
    Convert420<4, 1>(dst, dst_stride, y, u, v, y_stride, chroma_stride, width, height);
}

void ConvertNv12ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* y, const Byte* uv,
                        std::int32_t y_stride, std::int32_t uv_stride, std::int32_t width,
                        std::int32_t height) {
    Convert420<4, 2>(dst, dst_stride, y, uv, uv + 1, y_stride, uv_stride, width, height);
}

void ConvertAyuv32ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                          std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        for (std::int32_t x = 0; x < width; ++x, to += 4, from += 4) {
            const Byte alpha = from[0];  // which is overwritten where both lie in the same memory
            Shade<3>(to, from[1], Chroma(from[2], from[3]));
            to[3] = alpha;
        }
    });
}

void ConvertYuy2ToRgb32(Byte* dst, std::int32_t dst_stride, const Byte* src,
                        std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    ForDriftingRows<4, 2>(dst, dst_stride, src, src_stride, width, height,
                          [=](Byte* d, const Byte* s) { ConvertYuy2Pairs<4>(d, s, 0, width / 2); });
}

void ConvertYuv422ToRgb24(std::int32_t width, Byte* dst, std::int32_t dst_stride, const Byte* y,
                          std::int32_t y_stride, const Byte* u, const Byte* v,
                          std::int32_t chroma_advance, std::int32_t height) {
    ForRowsOf422<3>(width, dst, dst_stride, y, y_stride, u, v, chroma_advance, height,
                    [=](Byte* d, const Byte* py, const Byte* pu, const Byte* pv) {
                        for (int j = 0; j < width / 2; ++j)
                            ShadePair<3>(d + 6 * j, py[2 * j], py[2 * j + 1], Chroma(pu[j], pv[j]));
                    });
}

}  // namespace plain

void ConvertYuy2ToRgb24(Byte* dst, std::int32_t dst_stride, const Byte* src,
                        std::int32_t src_stride, std::int32_t width, std::int32_t height) {
    constexpr Variants<PackedToPackedKernel> kRun = {pairwise::ConvertYuy2RunToRgb24, nullptr,
                                                     PXB_SSE2_AND_WIDER(ConvertYuy2RunToRgb24)};
    kRun.Choose()(dst, dst_stride, src, src_stride, width, height);
    ForDriftingRows<3, 2>(
        dst, dst_stride, src, src_stride, width, height,
        [=](Byte* d, const Byte* s) { ConvertYuy2Pairs<3>(d, s, width / 16 * 8, width / 2); });
}

}  // namespace pxb
