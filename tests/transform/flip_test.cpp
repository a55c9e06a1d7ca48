// Both mirrors, against moves of single pixels that are written down from coordinates.
#include <gtest/gtest.h>

#include <cstring>

#include "support/effort.h"
#include "support/trial.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

using Flip = int32_t(PXB_CALL*)(ImageBuffer*, const Rect*);

// What a call changes. A sample goes from one offset from the data to another, or stays.
class Mirror {
  public:
    Mirror(Flip flip, const ImageBuffer& image, const Rect& r)
        : across_(flip == PxbFliphorizontal) {
        const Int bytes = BytesPerPixel(image.format), stride = image.stride;
        const Int width = r.right - r.left;
        if (across_ && image.format == PXB_RGB8) return;
        const Area luma = {0, stride, r.left, r.top, width, r.bottom};
        if (across_ && image.format == PXB_YUY2)
            ReverseGroups(luma);
        else
            Exchange(luma, bytes, width);
        if (!Is420(image.format)) return;
        const Int u = stride * image.height,
                  v = u + (across_ ? image.height / 2 * (stride / 2) : u / 4);
        const Int chroma_width = across_ ? r.right / 2 - r.left / 2 : width / 2;
        for (const Int plane : {u, v})
            Exchange({plane, stride / 2, r.left / 2, r.top / 2, chroma_width,
                      r.top / 2 + (r.bottom - r.top) / 2},
                     1, width / 4);
    }

    Visited WhatIsVisited() const {
        Visited visited;
        for (const Move& move : moves_) visited.luma.Add(move.to, move.bytes);
        return visited;
    }

    void Apply(Byte* data) const {
        const Span all = WhatIsVisited().All();
        if (all.IsEmpty()) return;
        const std::vector<Byte> before(data + all.first, data + all.end);
        for (const Move& move : moves_)
            std::copy_n(before.data() + (move.from - all.first), move.bytes, data + move.to);
    }

  private:
    struct Move {
        Int to, from, bytes;
    };
    struct Area {
        Int plane, stride, left, top, width, bottom;
        Int At(Int x, Int y, Int bytes) const { return plane + y * stride + (left + x) * bytes; }
    };
    // Rows, or in each row the first `count` pixels with the last ones.
    void Exchange(const Area& a, Int bytes, Int count) {
        for (Int y = a.top; y < a.bottom; ++y)
            for (Int x = 0; x < a.width; ++x) {
                const bool moves = across_ && (x < count || x >= a.width - count);
                const Int from_x = moves ? a.width - 1 - x : x;
                const Int from_y = across_ ? y : a.top + a.bottom - 1 - y;
                moves_.push_back({a.At(x, y, bytes), a.At(from_x, from_y, bytes), bytes});
            }
    }
    void ReverseGroups(const Area& a) {
        for (Int y = a.top; y < a.bottom; ++y)
            for (Int x = 0; x < a.width; x += 2) {
                const Int to = a.At(x, y, 2), from = a.At(a.width - 2 - x, y, 2);
                const Int other_luma = to == from ? 0 : 2;
                for (const Int i : {0, 1, 2, 3})
                    moves_.push_back({to + i, from + (i % 2 ? i : i ^ other_luma), 1});
            }
    }

    const bool across_;
    std::vector<Move> moves_;
};

bool Handles(Flip flip, const ImageBuffer& image, const Rect& r) {
    if (flip == PxbFlipvertical) return true;
    if (image.format == PXB_YUY2) return (r.left | r.top | r.right | r.bottom) % 2 == 0;
    return image.format != PXB_YUV422;
}

class FlipTrial : private Trial {
  public:
    // The record comes without data. Mirrors `rect` or, where it is null, the whole image, both
    // ways and in all variants.
    void Run(ImageBuffer image, const Rect* rect) {
        const Rect r = rect ? *rect : Rect{0, 0, image.width, image.height};
        for (const Flip flip : {PxbFliphorizontal, PxbFlipvertical}) {
            if (!Handles(flip, image, r)) continue;
            const Mirror mirror(flip, image, r);
            Place(image, dst_memory, mirror.WhatIsVisited(),
                  ++number_ % 2 ? Placement::kFront : Placement::kBack);
            const auto model = [&](const ImageBuffer& expected, auto&&) {
                mirror.Apply(expected.data);
            };
            const auto call = [&](ImageBuffer* dst, auto&&) { return flip(dst, rect); };
            for (const Variant& variant : variants_) {
                const ForcedProcessor forced(variant.words);
                ASSERT_TRUE(Compare(image, image, model, call))
                    << variant.name << (flip == PxbFliphorizontal ? " horizontal " : " vertical ")
                    << kFormatNames[image.format] << " " << image.width << " x " << image.height
                    << ", stride " << image.stride << ": " << r.left << " " << r.top << " "
                    << r.right << " " << r.bottom;
            }
        }
    }

  private:
    const std::vector<Variant> variants_ = RunnableVariants();
    int number_ = 0;
};

TEST(Flip, MirrorsAsWorkedOutByHand) {
    constexpr struct {
        int format;
        Size size;
        const char *before, *left_to_right, *upside_down;
    } kCases[] = {
        {PXB_RGB24, {3, 1}, "bgrBGRxyz", "xyzBGRbgr", "bgrBGRxyz"},
        {PXB_RGB32, {1, 3}, "abcdefghijkl", "abcdefghijkl", "ijklefghabcd"},
        {PXB_YUY2, {4, 1}, "aubvcxdy", "dxcybuav", "aubvcxdy"},
        {PXB_RGB8, {3, 2}, "abcdef", "abcdef", "defabc"},
        {PXB_YUV422, {4, 2}, "abcdefgh", "abcdefgh", "efghabcd"},
        {PXB_I420, {4, 2}, "abcdefghuvUV", "dcbahgfevuVU", "efghabcduvUV"},
        {PXB_YV12, {2, 4}, "abcdefghuvUV", "badcfehguvUV", "ghefcdabvuVU"},
    };
    for (const auto& c : kCases)
        for (const Flip flip : {PxbFliphorizontal, PxbFlipvertical}) {
            std::string bytes = c.before;
            ImageBuffer image = Describe(c.format, c.size);
            image.data = reinterpret_cast<Byte*>(bytes.data());
            flip(&image, nullptr);
            EXPECT_EQ(bytes, flip == PxbFliphorizontal ? c.left_to_right : c.upside_down)
                << kFormatNames[c.format];
        }
}

TEST(Flip, MirrorsEveryRectangleOfSmallImages) {
    FlipTrial trial;
    for (int format = PXB_RGB24; format <= PXB_YUV422; ++format)
        for (const Size size : {Size{1, 1}, {2, 3}, {3, 2}, {5, 4}, {6, 5}, {7, 2}, {9, 3}}) {
            if (!kThorough && size.width > 5) continue;
            const ImageBuffer image = Describe(format, size, size.width % 3 + size.height % 2);
            for (Rect r = {}; r.left < size.width; ++r.left)
                for (r.right = r.left + 1; r.right <= size.width; ++r.right)
                    for (r.top = 0; r.top < size.height; ++r.top)
                        for (r.bottom = r.top + 1; r.bottom <= size.height; ++r.bottom) {
                            ASSERT_NO_FATAL_FAILURE(trial.Run(image, &r));
                        }
        }
}

// Widths with every remainder by every register, at every alignment, as whole images and as areas.
TEST(Flip, MirrorsWideRows) {
    FlipTrial trial;
    for (int format = PXB_RGB24; format <= PXB_YUV422; ++format)
        for (int width = 1; width <= 300; width += kThorough ? 1 : 7) {
            const bool bottom_up = !Is420(format) && width % 3 == 1;
            ASSERT_NO_FATAL_FAILURE(
                trial.Run(Describe(format, {width, 4}, width % 5, bottom_up), nullptr));
            const int left = format == PXB_YUY2 ? width % 4 * 2 : width % 7;
            const Rect rect = {left, 2, left + width, 4 + width % 2 * (format != PXB_YUY2)};
            ASSERT_NO_FATAL_FAILURE(
                trial.Run(Describe(format, {left + width + 3, 5}, width % 4, bottom_up), &rect));
        }
}

// Large enough for rows to be fetched ahead.
TEST(Flip, MirrorsLargeImages) {
    constexpr Size kSize = {701, 521};
    Image expected(PXB_RGB24, kSize, 1);
    const Rect whole = {0, 0, kSize.width, kSize.height};
    Mirror(PxbFliphorizontal, expected.record, whole).Apply(expected.record.data);
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        Image image(PXB_RGB24, kSize, 1);
        ASSERT_EQ(PxbFliphorizontal(&image.record, nullptr), PXB_SUCCESS);
        ASSERT_TRUE(image == expected) << variant.name;
    }
}

TEST(Flip, AnswersAndVisitsCompanionsInTheOrderOfItsChecks) {
    constexpr Rect kInside = {2, 0, 4, 2}, kEmpty[] = {{3, 1, 3, 2}, {1, 2, 3, 2}};
    constexpr Rect kOdd[] = {{1, 0, 4, 2}, {0, 1, 4, 4}, {0, 0, 3, 2}, {0, 0, 4, 3}};
    constexpr Rect kBad[] = {{0, -1, 4, 2}, {-1, 0, 4, 2}, {0, 0, 4, 5},
                             {0, 0, 7, 2},  {0, 3, 4, 2},  {3, 0, 2, 2}};
    constexpr int32_t kOk = PXB_SUCCESS, kNot = PXB_UNSUPPORTED, kRefused = PXB_BAD_ARGUMENT;
    struct Case {
        int format, width;
        const Rect* rect;
        bool has_data;
        int32_t horizontal, vertical;
        bool visits_horizontal = true, visits_vertical = true;
    };
    std::vector<Case> cases = {{PXB_YUV422, 6, &kInside, true, kNot, kOk},
                               {PXB_YUV422, 6, nullptr, true, kNot, kOk},
                               {PXB_YUY2, 5, nullptr, true, 3, kOk},
                               {PXB_YUY2, -5, nullptr, true, 3, kOk},
                               {PXB_YUY2, 6, &kInside, true, kOk, kOk}};
    for (const int format : {PXB_RGB24, PXB_RGB32, PXB_YUY2, PXB_I420, PXB_RGB8})
        for (const int width : {6, 0, -6})
            cases.push_back({format, width, nullptr, true, kOk, kOk});
    for (const int format : {0, 8, 9, 10, -1, INT32_MIN, INT32_MAX})
        for (const Rect* rect : {static_cast<const Rect*>(nullptr), &kInside})
            cases.push_back({format, 6, rect, true, kRefused, kRefused});
    for (int format = 0; format <= 10; ++format) {
        cases.push_back({format, 6, nullptr, false, kRefused, kRefused, false, false});
        for (const Rect& empty : kEmpty)
            cases.push_back({format, 6, &empty, format % 2 == 0, kOk, kOk, false, false});
        for (const Rect& bad : kBad)
            cases.push_back({format, 6, &bad, true, kRefused, kRefused, false, false});
    }
    for (const Rect& odd : kOdd) cases.push_back({PXB_YUY2, 6, &odd, true, kRefused, kOk, false});

    for (const Case& c : cases)
        for (const Flip flip : {PxbFliphorizontal, PxbFlipvertical}) {
            const bool horizontal = flip == PxbFliphorizontal;
            SCOPED_TRACE(testing::Message() << "format " << c.format << ", width " << c.width
                                            << (horizontal ? ", horizontal" : ", vertical"));
            const int32_t wanted = horizontal ? c.horizontal : c.vertical;
            const bool visits = horizontal ? c.visits_horizontal : c.visits_vertical;
            Image pixels(PXB_RGB32, {8, 8}, 1), companion(PXB_RGB24, {6, 4}, 2);
            ImageBuffer image = {
                c.has_data ? pixels.At(0, 2) : nullptr, 16, 16, c.width, 4, c.format, nullptr};
            EXPECT_EQ(flip(&image, c.rect), wanted);
            EXPECT_TRUE(!pixels.HasChanged() || (wanted == kOk && c.width > 0));
            image.alpha = &companion.record;
            EXPECT_EQ(flip(&image, c.rect), visits ? kOk : wanted);
            EXPECT_EQ(companion.HasChanged(), visits);
            if (c.rect == &kInside) {
                EXPECT_EQ(companion.At(1, 3)[0], Image(PXB_RGB24, {6, 4}, 2).At(1, 3)[0]);
            }
            companion.record.format = PXB_NV12;  // whose refusal hides the image's own success
            EXPECT_EQ(flip(&image, c.rect), visits ? kRefused : wanted);
        }
    // No pixels either: planes of a negative size.
    Image pixels(PXB_RGB32, {8, 8}, 1);
    ImageBuffer image = {pixels.At(0, 4), 12, -8, 8, 4, PXB_I420, nullptr};
    for (const Flip flip : {PxbFliphorizontal, PxbFlipvertical})
        EXPECT_EQ(flip(&image, nullptr), kOk);
    EXPECT_FALSE(pixels.HasChanged());
}

// `bitsPerPixel` of the record decides how many bytes move, even where rows then overlap.
TEST(Flip, TurnsPixelsOfTheRecordsSize) {
    constexpr int kSize = 256, kMiddle = 128;
    for (const int bits : {-8, 0, 7, 8, 15, 16, 24, 40, 64})
        for (int stride = -9; stride <= 9; ++stride)
            for (int height = 1; height <= 5; ++height) {
                std::vector<Byte> memory = Noise(kSize, 3), expected = memory;
                ImageBuffer image = {&memory[kMiddle], bits, stride, 5, height, PXB_RGB24, nullptr};
                const Rect rect = {1, 0, 4, height};
                ASSERT_EQ(PxbFlipvertical(&image, &rect), PXB_SUCCESS);
                const int bytes = std::max(bits / 8, 0);
                for (int i = 0; i < height - 1 - i; ++i) {
                    Byte* const row = &expected[kMiddle + bytes + i * stride];
                    Byte* const other = &expected[kMiddle + bytes + (height - 1 - i) * stride];
                    const std::vector<Byte> scratch(row, row + 3 * bytes);
                    std::memmove(row, other, scratch.size());
                    std::copy(scratch.begin(), scratch.end(), other);
                }
                ASSERT_EQ(memory, expected) << bits << " bits, stride " << stride << ", " << height;
            }
}

}  // namespace
}  // namespace pxb::test
