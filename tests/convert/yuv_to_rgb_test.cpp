#include "convert/yuv_to_rgb.h"

#include <gtest/gtest.h>

#include "convert/kernel_list.h"
#include "effort.h"

namespace pxb::test {
namespace {

std::vector<ListedKernel> YuvToRgbKernels() {
    std::vector<ListedKernel> kernels;
    const auto list = [&](const char* target, FormatPair formats, Flips flips, auto* kernel) {
        kernels.push_back(List(target, formats, flips, kernel));
    };
#define PXB_LIST(target)                                                                       \
    list(#target, {PXB_I420, PXB_RGB24}, Flips::kDestination, target::ConvertYuv420ToRgb24);   \
    list(#target, {PXB_YV12, PXB_RGB32}, Flips::kDestination, target::ConvertYuv420ToRgb32);   \
    list(#target, {PXB_NV12, PXB_RGB32}, Flips::kDestination, target::ConvertNv12ToRgb32);     \
    list(#target, {PXB_YUV422, PXB_RGB24}, Flips::kDestination, target::ConvertYuv422ToRgb24); \
    list(#target, {PXB_YUY2, PXB_RGB32}, Flips::kSource, target::ConvertYuy2ToRgb32);          \
    list(#target, {PXB_AYUV32, PXB_RGB32}, Flips::kSource, target::ConvertAyuv32ToRgb32)
    PXB_LIST(plain);
    PXB_LIST(pairwise);
    PXB_LIST(mmx);
    PXB_LIST(sse2);
    PXB_LIST(avx2);
    PXB_LIST(avx512);
#undef PXB_LIST
    list("any", {PXB_YUY2, PXB_RGB24}, Flips::kSource, ConvertYuy2ToRgb24);
    return kernels;
}

TEST(YuvToRgb, EveryKernelGivesTheBytesOfTheReference) {
    ExpectTheReference(YuvToRgbKernels());
}

// Which SIMD the processor has must not show: of each row, the first 16-pixel runs are in 6 bits,
// the rest in 13.
TEST(YuvToRgb, Yuy2ToRgb24IsTheSameOnAllProcessors) {
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        std::uint8_t white[4 * 10], bgr[3 * 20];
        for (int i = 0; i < 40; ++i) white[i] = i % 2 ? 128 : 235;
        ConvertYuy2ToRgb24(bgr, 60, white, 40, 20, 1);
        for (int i = 0; i < 60; ++i) ASSERT_EQ(bgr[i], i < 48 ? 253 : 254) << variant.name << i;
    }
}

TEST(YuvToRgb, WorkedValues) {
    constexpr struct {
        std::uint8_t y, u, v, plain[3], simd[3];  // B G R
    } kCases[] = {
        {16, 128, 128, {0, 0, 0}, {0, 0, 0}},     {235, 128, 128, {254, 254, 254}, {253, 253, 253}},
        {16, 255, 128, {255, 0, 0}, {255, 0, 0}}, {255, 0, 0, {19, 255, 73}, {18, 255, 72}},
        {81, 90, 239, {0, 0, 252}, {0, 0, 252}},
    };
    for (const ListedKernel& kernel : YuvToRgbKernels()) {
        if (!IsRunnable(kernel) || kernel.formats.from != PXB_YUY2) continue;
        for (const auto& c : kCases) {
            std::uint8_t yuy2[32 * 4], rgb[32 * 4];
            for (int i = 0; i < 32; ++i) {
                yuy2[4 * i] = yuy2[4 * i + 2] = c.y;
                yuy2[4 * i + 1] = c.u, yuy2[4 * i + 3] = c.v;
            }
            ImageBuffer dst = Describe(kernel.formats.to, {32, 1}, 0);
            ImageBuffer src = Describe(kernel.formats.from, {32, 1}, 0);
            dst.data = rgb, src.data = yuy2;
            kernel.run(&dst, &src);
            const int bytes = BytesPerPixel(dst.format);
            for (int i = 0; i < 32 * bytes; ++i) {
                const bool is_plain = ArithmeticOf(kernel) == ::Processor::kPlain;
                const std::uint8_t* const wanted = is_plain ? c.plain : c.simd;
                ASSERT_EQ(rgb[i], i % bytes < 3 ? wanted[i % bytes] : 0)
                    << kernel.target << " of " << int{c.y} << " " << int{c.u} << " " << int{c.v};
            }
        }
    }
}

// One image per U: V across, Y down, where pixels that share chroma have different Y.
class ColorSweep {
  public:
    static constexpr Size kSize = {512, 128};

    explicit ColorSweep(PixelFormat format)
        : image_(Describe(format, kSize, 0)), bytes_(4 * kSize.width * kSize.height) {
        image_.data = bytes_.data();
    }

    const ImageBuffer& Image(int u) {
        for (int y = 0; y < kSize.height; ++y)
            for (int x = 0; x < kSize.width; ++x)
                Put(x, y, y / 2 * 4 + y % 2 * 2 + x % 2, u, x / 2);
        return image_;
    }

  private:
    void Put(int x, int y, int luma, int u, int v) {
        const int area = kSize.width * kSize.height;
        const int row = y * image_.stride, chroma_row = Is420(image_.format) ? y / 2 : y;
        switch (image_.format) {
            case PXB_YUY2:
                bytes_[row + 2 * x] = static_cast<Byte>(luma);
                bytes_[row + 2 * x + 1] = static_cast<Byte>(x % 2 ? v : u);
                break;
            case PXB_AYUV32:
                bytes_[row + 4 * x + 1] = static_cast<Byte>(luma);
                bytes_[row + 4 * x + 2] = static_cast<Byte>(u);
                bytes_[row + 4 * x + 3] = static_cast<Byte>(v);
                break;
            case PXB_NV12:
                bytes_[row + x] = static_cast<Byte>(luma);
                bytes_[area + chroma_row * kSize.width + x] = static_cast<Byte>(x % 2 ? v : u);
                break;
            default: {
                const int second = image_.format == PXB_YUV422 ? area / 2 : area / 4;
                const bool v_first = image_.format == PXB_YV12;
                const int at = area + chroma_row * kSize.width / 2 + x / 2;
                bytes_[row + x] = static_cast<Byte>(luma);
                bytes_[at + (v_first ? second : 0)] = static_cast<Byte>(u);
                bytes_[at + (v_first ? 0 : second)] = static_cast<Byte>(v);
            }
        }
    }

    ImageBuffer image_;
    std::vector<Byte> bytes_;
};

void SweepAllColors(FormatPair formats) {
    ColorSweep sweep(formats.from);
    ImageBuffer dst = Describe(formats.to, ColorSweep::kSize, 0);
    const auto size = static_cast<std::size_t>(dst.stride) * dst.height;
    std::vector<Byte> plain(size), simd(size), got(size);
    for (int u = 0; u < 256; ++u) {
        if (!IsTried(u)) continue;
        const ImageBuffer src = sweep.Image(u);
        dst.data = plain.data();
        ConvertByReference(dst, src, ::Processor::kPlain);
        dst.data = simd.data();
        ConvertByReference(dst, src, ::Processor::kSse2);
        dst.data = got.data();
        for (const ListedKernel& kernel : YuvToRgbKernels()) {
            if (kernel.formats != formats || !IsRunnable(kernel)) continue;
            kernel.run(&dst, &src);
            ASSERT_TRUE(got == (ArithmeticOf(kernel) == ::Processor::kPlain ? plain : simd))
                << kernel.target << ", U = " << u;
        }
    }
}

TEST(YuvToRgb, EveryKernelConvertsAllColors) {
    constexpr FormatPair kPairs[] = {{PXB_I420, PXB_RGB24},  {PXB_YV12, PXB_RGB32},
                                     {PXB_NV12, PXB_RGB32},  {PXB_YUV422, PXB_RGB24},
                                     {PXB_YUY2, PXB_RGB32},  {PXB_YUY2, PXB_RGB24},
                                     {PXB_AYUV32, PXB_RGB32}};
    for (const FormatPair& formats : kPairs) {
        SCOPED_TRACE(testing::Message() << "format " << formats.from << " to " << formats.to);
        SweepAllColors(formats);
    }
}

}  // namespace
}  // namespace pxb::test
