#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/guarded_memory.h"
#include "support/image.h"

namespace pxb::test {
namespace {

// The top byte of a code has no effect.
constexpr struct Color {
    std::uint32_t code;
    Byte r, g, b, y, u, v, grey;
} kColors[] = {
    {0x000000, 0, 0, 0, 16, 128, 128, 0},    {0xFFFFFF, 255, 255, 255, 235, 128, 128, 255},
    {0x0000FF, 255, 0, 0, 81, 90, 239, 85},  {0x00FF00, 0, 255, 0, 144, 53, 34, 85},
    {0xFF0000, 0, 0, 255, 40, 239, 109, 85}, {0xAB352211, 0x11, 0x22, 0x35, 42, 138, 119, 34},
};

struct Layout {
    std::vector<Byte> group;  // what repeats in a row
    int pixels;               // in a group
    int padding;              // what padding becomes; -1: it stays
};

Layout LayoutOf(int format, const Color& c) {
    switch (format) {
        case PXB_RGB24:
            return {{c.b, c.g, c.r}, 1, -1};
        case PXB_RGB32:
            return {{c.b, c.g, c.r, 0}, 1, -1};
        case PXB_YUY2:
            return {{c.y, c.u, c.y, c.v}, 2, -1};
        case PXB_YUV422:
            return {{c.u, c.y, c.v, c.y}, 2, -1};
        case PXB_RGB8:
            return {{c.grey}, 1, 0};
        default:
            return {{c.y}, 1, c.y};
    }
}

// The bytes from `image.data` on that the fill must leave there; 4:2:0 planes follow.
void Paint(Byte* at, const ImageBuffer& image, const Color& c) {
    const Layout layout = LayoutOf(image.format, c);
    const int group = static_cast<int>(layout.group.size());
    for (int y = 0; y < image.height; ++y)
        for (int i = 0; i < std::abs(image.stride); ++i) {
            Byte& byte = at[y * image.stride + i];
            if (i / group < image.width / layout.pixels)
                byte = layout.group[i % group];
            else if (layout.padding >= 0 && image.stride > 0)
                byte = static_cast<Byte>(layout.padding);
        }
    if (!Is420(image.format)) return;
    const int luma = image.stride * image.height;
    const bool v_first = image.format == PXB_YV12;
    for (int i = 0; i < luma / 4; ++i) {
        at[luma + i] = v_first ? c.v : c.u;
        at[luma + luma / 4 + i] = v_first ? c.u : c.v;
    }
}

struct Shape {
    int width, height, padding;
    bool bottom_up;
};

// The image ends where the memory does. Nothing but its bytes may change, although all of them also
// belong to a companion.
void ExpectPainted(Byte* memory, int size, int format, Shape shape) {
    SCOPED_TRACE(testing::Message() << "format " << format << ", " << shape.width << " x "
                                    << shape.height << " + " << shape.padding);
    const Color& color = kColors[(shape.width + shape.height + format) % 6];
    const Layout layout = LayoutOf(format, color);
    const int row = shape.width * static_cast<int>(layout.group.size()) / layout.pixels;
    const int stride = row + shape.padding, luma = stride * shape.height;
    ImageBuffer companion = {memory, 8, size, size, 1, PXB_RGB8, nullptr};
    Byte* const data = memory + size - luma - (Is420(format) ? luma / 4 * 2 : 0);
    ImageBuffer image = {data, 0, stride, shape.width, shape.height, format, &companion};
    if (shape.bottom_up) {
        image.data += (shape.height - 1) * stride;
        image.stride = -stride;
    }
    std::vector<Byte> expected = Noise(static_cast<std::size_t>(size), 1);
    std::memcpy(memory, expected.data(), expected.size());
    Paint(expected.data() + (image.data - memory), image, color);
    ASSERT_EQ(PxbFillColor(&image, color.code), PXB_SUCCESS);
    ASSERT_EQ(std::memcmp(memory, expected.data(), expected.size()), 0);
}

// Rows of every short length, each of them at its own alignment.
TEST(FillColor, PaintsShortRows) {
    const GuardedMemory memory;
    for (int format = PXB_RGB24; format <= PXB_YUV422; ++format)
        for (int width = 0; width <= 600; ++width)
            for (const int padding : {0, 1, 6}) {
                const int height = (width / 2 + padding) % 4;
                const bool bottom_up = width % 2 && height > 0 && !Is420(format);
                ASSERT_NO_FATAL_FAILURE(ExpectPainted(memory.First(), GuardedMemory::kArea, format,
                                                      {width, height, padding, bottom_up}));
            }
}

// Long rows, and rows that follow one another without padding, are painted in larger pieces.
TEST(FillColor, PaintsLargeImages) {
    constexpr int kSize = (1 << 21) - 1;  // odd, so that rows lie at any alignment
    std::vector<Byte> memory(kSize);
    for (int format = PXB_RGB24; format <= PXB_YUV422; ++format)
        for (const Shape shape :
             {Shape{301, 301, 0, false}, Shape{301, 301, 3, false}, Shape{20001, 5, 7, false},
              Shape{20001, 5, 7, true}, Shape{2731, 3, 5, false}, Shape{641, 641, 0, false}}) {
            if (shape.bottom_up && Is420(format)) continue;
            ASSERT_NO_FATAL_FAILURE(ExpectPainted(memory.data(), kSize, format, shape));
        }
}

TEST(FillColor, RefusesOrPaintsNothing) {
    std::vector<Byte> bytes(256, 77);
    ImageBuffer companion = {bytes.data() + 128, 8, 4, 4, 4, PXB_RGB8, nullptr};
    const auto expect = [&](ImageBuffer image, int32_t wanted) {
        EXPECT_EQ(PxbFillColor(&image, 0x123456), wanted) << "format " << image.format;
        EXPECT_EQ(bytes, std::vector<Byte>(256, 77)) << "format " << image.format;
    };
    for (const int format : {INT32_MIN, -1, 0, int{PXB_AYUV32}, int{PXB_NV12}, 10})
        expect({bytes.data() + 64, 0, 16, 4, 4, format, &companion}, PXB_BAD_ARGUMENT);
    for (const int format : {PXB_I420, PXB_YV12})
        expect({bytes.data() + 64, 0, -4, 4, 4, format, &companion}, PXB_SUCCESS);
    for (const int format : {PXB_YUY2, PXB_YUV422})
        expect({bytes.data() + 64, 0, 8, 1, 4, format, &companion}, PXB_SUCCESS);
    for (int format = 0; format <= 10; ++format) {
        expect({nullptr, 0, 16, 4, 4, format, &companion}, PXB_BAD_ARGUMENT);
        if (format < PXB_RGB24 || format > PXB_YUV422) continue;
        for (const int extent : {0, -1, INT32_MIN}) {
            expect({bytes.data(), 0, 16, 4, extent, format, &companion}, PXB_SUCCESS);
            if (extent == 0) continue;  // rows without pixels have padding to paint
            expect({bytes.data(), 0, 16, extent, 4, format, &companion}, PXB_SUCCESS);
        }
    }
}

}  // namespace
}  // namespace pxb::test
