#include <gtest/gtest.h>

#include "PxbLib.h"

namespace pxb::test {
namespace {

struct Offsets {
    std::int64_t rgb24, rgb32, rgb8, y420, first_chroma, second_chroma, y_yuy2, u_yuy2;
};

struct Case {
    int stride, height, x, y;
    Offsets wanted;
};

// The first four by hand from the formulas; halves and quarters truncate toward zero.
const Case kCases[] = {
    {16, 4, 2, 1, {22, 24, 18, 17, 69, 85, 20, 21}},
    {4, 4, 2, 2, {14, 16, 10, 9, 19, 23, 12, 13}},
    {4, 4, 3, 1, {13, 16, 7, 5, 18, 22, 10, 9}},
    {4, 4, 3, 0, {9, 12, 3, 1, 17, 21, 6, 5}},
    {5, 3, -1, -3, {-18, -19, -16, -15, 12, 15, -17, -14}},
    {-8, 2, -5, 1, {-23, -28, -13, -10, -20, -24, -18, -15}},
};

// Offsets beyond 32 bits, where there is room for them.
const Case kLargeCase = {
    1 << 20,
    1 << 16,
    2000000000,
    -(1 << 15),
    {6000000000 - (1LL << 35), 8000000000 - (1LL << 35), 2000000000 - (1LL << 35),
     1000000000 - (1LL << 35), (1LL << 36) - (1LL << 33) + 1000000000,
     (1LL << 36) + (1LL << 34) - (1LL << 33) + 1000000000, 4000000000 - (1LL << 35),
     4000000001 - (1LL << 35)}};

void Expect(const Case& c) {
    SCOPED_TRACE(testing::Message() << c.stride << " " << c.height << " " << c.x << " " << c.y);
    const std::uintptr_t base = sizeof(void*) == 8 ? std::uintptr_t{1} << 45 >> 1 : 0x40000000;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): an address at which nothing lies
    auto* const data = reinterpret_cast<std::uint8_t*>(base);
    const ImageBuffer image = {data, 0, c.stride, 0, c.height, 0, nullptr};
    const PlanePointers i420 = PxbPixelsI420(&image, c.x, c.y);
    const PlanePointers yv12 = PxbPixelsYV12(&image, c.x, c.y);
    const PlanePointers yuy2 = PxbPixelsYUY2(&image, c.x, c.y);
    const std::pair<const std::uint8_t*, std::int64_t> addresses[] = {
        {PxbPixelsRGB24(&image, c.x, c.y), c.wanted.rgb24},
        {PxbPixelsRGB32(&image, c.x, c.y), c.wanted.rgb32},
        {PxbPixelsRGB8(&image, c.x, c.y), c.wanted.rgb8},
        {i420.y, c.wanted.y420},
        {i420.u, c.wanted.first_chroma},
        {i420.v, c.wanted.second_chroma},
        {yv12.y, c.wanted.y420},
        {yv12.v, c.wanted.first_chroma},
        {yv12.u, c.wanted.second_chroma},
        {yuy2.y, c.wanted.y_yuy2},
        {yuy2.u, c.wanted.u_yuy2},
        {yuy2.v, c.wanted.u_yuy2 + 2},
    };
    for (const auto& [address, wanted] : addresses)
        EXPECT_EQ(static_cast<std::intptr_t>(reinterpret_cast<std::uintptr_t>(address) - base),
                  wanted);
}

TEST(Pixels, Addresses) {
    for (const Case& c : kCases) Expect(c);
    if (sizeof(void*) == 8) Expect(kLargeCase);
}

TEST(Pixels, PlanarYuv422HasNone) {
    const PlanePointers p = PxbPixelsYUV422(nullptr, 1, 2);
    EXPECT_TRUE(!p.y && !p.u && !p.v);
}

}  // namespace
}  // namespace pxb::test
