// PxbFillColor: colours by hand, and images large enough to be painted in larger pieces.
#include <gtest/gtest.h>

#include "fuzz/buffers.h"

namespace pxb::test {
namespace {

// The top byte of a code has no effect.
TEST(FillColor, PaintsPinnedColors) {
    constexpr struct Color {
        std::uint32_t code;
        Byte r, g, b, y, u, v, grey;
    } kColors[] = {
        {0x000000, 0, 0, 0, 16, 128, 128, 0},    {0xFFFFFF, 255, 255, 255, 235, 128, 128, 255},
        {0x0000FF, 255, 0, 0, 81, 90, 239, 85},  {0x00FF00, 0, 255, 0, 144, 53, 34, 85},
        {0xFF0000, 0, 0, 255, 40, 239, 109, 85}, {0xAB352211, 0x11, 0x22, 0x35, 42, 138, 119, 34},
    };
    for (const Color& c : kColors) {
        const std::vector<Byte> wanted[] = {
            {},         {c.b, c.g, c.r}, {c.b, c.g, c.r, 0},   {c.y, c.y}, {c.y, c.u, c.y, c.v},
            {c.y, c.y}, {c.grey},        {c.u, c.y, c.v, c.y},
        };
        for (int format = PXB_RGB24; format <= PXB_YUV422; ++format) {
            Image image(format, {2, 2}, 1);
            if (format == PXB_YUV422) image.record.stride = 4;
            ASSERT_EQ(PxbFillColor(&image.record, c.code), PXB_SUCCESS);
            EXPECT_EQ(image.First(wanted[format].size()), wanted[format]) << kFormatNames[format];
            if (!Is420(format)) continue;
            const bool v_first = format == PXB_YV12;
            EXPECT_EQ(image.record.data[4], v_first ? c.v : c.u) << kFormatNames[format];
            EXPECT_EQ(image.record.data[5], v_first ? c.u : c.v) << kFormatNames[format];
        }
    }
}

// Long rows, and rows that follow one another without padding.
TEST(FillColor, PaintsLargeImages) {
    constexpr struct {
        Size size;
        int padding;
        bool bottom_up;
    } kShapes[] = {{{301, 301}, 0, false}, {{301, 301}, 3, false}, {{20001, 5}, 7, false},
                   {{20001, 5}, 7, true},  {{2731, 3}, 5, false},  {{641, 641}, 0, false}};
    const std::size_t kBefore = 1001;  // odd, so that rows lie at any alignment
    for (int format = PXB_RGB24; format <= PXB_YUV422; ++format)
        for (const auto& [size, padding, bottom_up] : kShapes) {
            if (bottom_up && Is420(format)) continue;
            ImageBuffer image = Describe(format, size, padding, bottom_up);
            if (format == PXB_YUV422) image.stride *= 2;
            const std::size_t all = std::size_t(std::abs(image.stride)) * size.height * 3 / 2;
            std::vector<Byte> got = Noise(all + 2 * kBefore, 1), wanted = got;
            const std::size_t top = bottom_up ? std::size_t(-image.stride) * (size.height - 1) : 0;
            image.data = &wanted[kBefore + top];
            PaintByModel(image, 0x123456);
            image.data = &got[kBefore + top];
            ASSERT_EQ(PxbFillColor(&image, 0x123456), PXB_SUCCESS);
            ASSERT_EQ(got, wanted) << kFormatNames[format] << " " << size.width;
        }
}

}  // namespace
}  // namespace pxb::test
