// What scaling does to pictures, as people would see it: in every variant, without the reference.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "support/image.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

constexpr std::int32_t kSteady[] = {0, 1, 5, 6};  // modes without faded borders

Image Resized(const Image& src, Size size, std::int32_t mode) {
    Image dst(src.record.format, size);
    EXPECT_EQ(PxbResize(&dst.record, &src.record, &mode), PXB_SUCCESS);
    return dst;
}

// Mode 6 is for shrinking in both directions.
bool IsFor(std::int32_t mode, Size from, Size to) {
    return mode != 6 || (to.width < from.width && to.height < from.height);
}

std::string Name(int format, Size from, Size to, std::int32_t mode) {
    std::ostringstream text;
    text << kFormatNames[format] << ", mode " << mode << ", " << from.width << " x " << from.height
         << " to " << to.width << " x " << to.height;
    return text.str();
}

template <class Check>
void InEveryVariant(const Check& check) {
    for (const Variant& variant : RunnableVariants()) {
        SCOPED_TRACE(variant.name);
        const ForcedProcessor forced(variant.words);
        check();
    }
}

// ---- Facts ----

TEST(ScaledContent, WholeFactorsRepeatOrPickPixels) {
    InEveryVariant([] {
        for (const int format : {PXB_RGB24, PXB_RGB32, PXB_RGB8})
            for (int factor = 1; factor <= 9; ++factor) {
                const Size small = {13, 5}, large = {13 * factor, 5 * factor};
                const Image few(format, small, 1), many(format, large, 1);
                const Image repeated = Resized(few, large, 0), picked = Resized(many, small, 0);
                const int bytes = BytesPerPixel(format);
                bool repeats = true, picks = true;
                for (int y = 0; y < large.height; ++y)
                    for (int x = 0; x < large.width; ++x) {
                        const int i = x / factor, j = y / factor, middle = factor / 2;
                        repeats &= !std::memcmp(repeated.At(x, y), few.At(i, j), bytes);
                        if (x % factor == middle && y % factor == middle)
                            picks &= !std::memcmp(picked.At(i, j), many.At(x, y), bytes);
                    }
                EXPECT_TRUE(repeats && picks) << kFormatNames[format] << ", " << factor;
            }
    });
}

// ---- Edges and ramps ----

constexpr int kLight = 200;

// Samples of one plane: luma, or chroma of half the width.
struct Samples {
    Byte* first;
    int step, stride, width, height;

    int At(int x, int y) const { return first[y * stride + x * step]; }
};

std::vector<Samples> PlanesOf(const Image& image) {
    const auto& [data, bits, stride, width, height, format, alpha] = image.record;
    if (format == PXB_YUY2)
        return {{data, 2, stride, width, height},
                {data + 1, 4, stride, width / 2, height},
                {data + 3, 4, stride, width / 2, height}};
    const int luma = stride * height;
    return {{data, 1, stride, width, height},
            {data + luma, 1, stride / 2, width / 2, height / 2},
            {data + luma + luma / 4, 1, stride / 2, width / 2, height / 2}};
}

constexpr int kSide = 64;

// Dark up to the edge, which is in parts of the side of all planes, then light.
Image WithEdge(int format, int edge, bool across) {
    Image image(format, {kSide, kSide});
    for (const Samples& s : PlanesOf(image))
        for (int y = 0; y < s.height; ++y)
            for (int x = 0; x < s.width; ++x)
                s.first[y * s.stride + x * s.step] =
                    (across ? x * kSide < edge * s.width : y * kSide < edge * s.height) ? 0
                                                                                        : kLight;
    return image;
}

// Where the middle row or column changes, in parts of the whole.
double EdgeOf(const Samples& s, bool across) {
    const int count = across ? s.width : s.height;
    double dark = 0;
    for (int i = 0; i < count; ++i)
        dark += kLight - (across ? s.At(i, s.height / 2) : s.At(s.width / 2, i));
    return dark / kLight / count;
}

// Over many edges, since shrinking bilinearly skips pixels. A wrong centre of chroma would show as
// half a sample.
TEST(ScaledContent, NeitherLumaNorChromaIsShifted) {
    constexpr int kFirst = 8, kEnd = 56;
    const auto shifts_of = [](const std::vector<Image>& sources, Size to, std::int32_t mode,
                              bool across) {
        std::vector<double> shifts(3);  // sums, in samples of the plane
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const Image dst = Resized(sources[i], to, mode);
            const double edge = (kFirst + 2.0 * static_cast<double>(i)) / kSide;
            for (int plane = 0; plane < 3; ++plane) {
                const Samples s = PlanesOf(dst)[plane];
                shifts[plane] += (EdgeOf(s, across) - edge) * (across ? s.width : s.height);
            }
        }
        return shifts;
    };
    for (const int format : {PXB_I420, PXB_YUY2})
        for (const bool across : {true, false}) {
            std::vector<Image> sources;
            for (int edge = kFirst; edge < kEnd; edge += 2)
                sources.push_back(WithEdge(format, edge, across));
            const double most = 0.1 * static_cast<double>(sources.size());
            InEveryVariant([&] {
                for (const Size to : {Size{42, 42}, Size{32, 32}, Size{16, 18}, Size{126, 192}})
                    for (const std::int32_t mode : {1, 6}) {
                        if (!IsFor(mode, {kSide, kSide}, to)) continue;
                        for (const double shift : shifts_of(sources, to, mode, across))
                            EXPECT_NEAR(shift, 0, most) << Name(format, {kSide, kSide}, to, mode);
                    }
            });
        }
}

TEST(ScaledContent, RampsStayMonotone) {
    constexpr Size kFrom = {256, 12};
    for (const int format : {PXB_RGB8, PXB_RGB24, PXB_RGB32}) {
        const Image src(format, kFrom);
        const int bytes = BytesPerPixel(format);
        for (int y = 0; y < kFrom.height; ++y)
            for (int i = 0; i < kFrom.width * bytes; ++i)
                src.At(0, y)[i] = static_cast<Byte>(i / bytes);
        InEveryVariant([&] {
            for (const Size to : {Size{255, 11}, Size{200, 6}, Size{171, 8}, Size{64, 3},
                                  Size{384, 15}, Size{1000, 13}})
                for (const std::int32_t mode : kSteady) {
                    if (!IsFor(mode, kFrom, to)) continue;
                    const Image dst = Resized(src, to, mode);
                    bool rises = true;
                    for (int y = 0; y < to.height; ++y)
                        for (int i = bytes; i < to.width * bytes; ++i)
                            rises = rises && dst.At(0, y)[i] >= dst.At(0, y)[i - bytes];
                    EXPECT_TRUE(rises) << Name(format, kFrom, to, mode);
                }
        });
    }
}

}  // namespace
}  // namespace pxb::test
