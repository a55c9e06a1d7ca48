// Positions and weights, pinned. The values come from the same steps in another language's doubles.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "scale/source_table.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

struct Axis {
    std::int32_t count, source;
};

std::vector<SourcePoint> TableOf(const Axis& axis, Filter filter, bool tight = false) {
    std::vector<SourcePoint> points(axis.count, SourcePoint{-77, {1, 2, 3, 4}});
    kSourceTable.Choose()(points.data(), axis.count, axis.source, filter, tight);
    return points;
}

std::uint32_t HashOf(const std::vector<SourcePoint>& points) {
    std::uint64_t hash = 0xCBF29CE484222325;
    const auto add = [&](std::uint32_t byte) { hash = (hash ^ (byte & 255)) * 0x100000001B3; };
    for (const SourcePoint& point : points) {
        for (const int shift : {0, 8, 16, 24})
            add(static_cast<std::uint32_t>(point.first) >> shift);
        for (const Byte weight : point.weight) add(weight);
    }
    return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

using FirstAndWeight = std::array<int, 2>;

TEST(SourceTables, HoldBilinearEdges) {
    const struct {
        Axis axis;
        Filter filter;
        bool tight;
        std::vector<FirstAndWeight> wanted;
    } kCases[] = {
        {{5, 7}, Filter::kNearest, false, {{0, 0}, {2, 0}, {3, 0}, {4, 0}, {6, 0}}},
        {{4, 7}, Filter::kBilinear, false, {{0, 96}, {2, 32}, {3, 223}, {5, 159}}},
        {{7, 3},
         Filter::kBilinear,
         false,
         {{0, 0}, {0, 36}, {0, 146}, {1, 0}, {1, 109}, {1, 219}, {2, 0}}},
        // Of 24-bit columns the last pixel but one is never interpolated.
        {{7, 3},
         Filter::kBilinear,
         true,
         {{0, 0}, {0, 36}, {0, 146}, {2, 0}, {2, 0}, {2, 0}, {2, 0}}},
        {{3, 3}, Filter::kBilinear, true, {{0, 0}, {2, 0}, {2, 0}}},
        {{7, 2}, Filter::kBilinear, true, {{0, 0}, {1, 0}, {1, 0}, {1, 0}, {1, 0}, {1, 0}, {1, 0}}},
        {{4, 7}, Filter::kFaded, false, {{0, 96}, {2, 32}, {3, 223}, {5, 159}}},
        {{7, 3},
         Filter::kFaded,
         false,
         {{-1, 85}, {0, 36}, {0, 146}, {1, 0}, {1, 109}, {1, 219}, {3, 85}}},
        {{9, 2},
         Filter::kFaded,
         false,
         {{-1, 0}, {-1, 64}, {0, 14}, {0, 71}, {0, 127}, {0, 184}, {0, 241}, {2, 64}, {2, 0}}},
    };
    for (const auto& c : kCases) {
        std::vector<FirstAndWeight> found;
        for (const SourcePoint& point : TableOf(c.axis, c.filter, c.tight)) {
            found.push_back({point.first, point.weight[1]});
            EXPECT_EQ(point.weight[0] + point.weight[2] + point.weight[3], 0);
        }
        EXPECT_EQ(found, c.wanted) << c.axis.count << " of " << c.axis.source;
    }
}

TEST(SourceTables, HoldSplineWeights) {
    const struct {
        Axis axis;
        std::vector<std::array<int, 5>> wanted;
    } kCases[] = {
        {{3, 5}, {{-1, 13, 146, 94, 2}, {1, 43, 169, 43, 0}, {2, 2, 94, 146, 13}}},
        {{2, 2}, {{-1, 43, 169, 43, 0}, {0, 43, 169, 43, 0}}},
        {{4, 7},
         {{-1, 10, 141, 102, 2}, {1, 28, 167, 60, 0}, {2, 0, 60, 167, 28}, {4, 2, 102, 141, 10}}},
    };
    for (const auto& c : kCases) {
        std::vector<std::array<int, 5>> found;
        for (const SourcePoint& p : TableOf(c.axis, Filter::kSpline))
            found.push_back({p.first, p.weight[0], p.weight[1], p.weight[2], p.weight[3]});
        EXPECT_EQ(found, c.wanted) << c.axis.count << " of " << c.axis.source;
    }
}

// Long tables, where each addition to the position rounds.
constexpr struct {
    Axis axis;
    std::uint32_t nearest, bilinear, tight, faded, spline;  // spline: where it shrinks
} kPinned[] = {
    {{1280, 1920}, 0x42C4CAC8, 0xBD3F8A70, 0xDF9C8A30, 0xBD3F8A70, 0xBA28BAF9},
    {{1920, 1280}, 0xFDCB7DE3, 0xFC7C3F1A, 0xE4799A14, 0xFE50F603, 0},
    {{1999, 1000}, 0x393AD19B, 0xE7D1D6C7, 0xB36A6CC9, 0xB3AB54CF, 0},
    {{1000, 1999}, 0xA06E4ECD, 0x01EE68A7, 0x75BAD841, 0x01EE68A7, 0xCD534B2F},
    {{997, 32603}, 0xE2DB7DA8, 0xC88ACDB5, 0xC88ACDB5, 0xC88ACDB5, 0x57C0BF6B},
    {{32749, 3}, 0x6DF563DC, 0x75C78CB8, 0x23E6C18E, 0x86313D67, 0},
    {{7919, 104729}, 0x7D7D9EA6, 0x11A04837, 0x11A04837, 0x11A04837, 0xB1799710},
};

TEST(SourceTables, AreTheSameOnEveryBuild) {
    for (const auto& pinned : kPinned)
        for (const Variant& variant : RunnableVariants()) {
            SCOPED_TRACE(testing::Message() << variant.name << ": " << pinned.axis.count << " of "
                                            << pinned.axis.source);
            const ForcedProcessor forced(variant.words);
            EXPECT_EQ(HashOf(TableOf(pinned.axis, Filter::kNearest)), pinned.nearest);
            EXPECT_EQ(HashOf(TableOf(pinned.axis, Filter::kBilinear)), pinned.bilinear);
            EXPECT_EQ(HashOf(TableOf(pinned.axis, Filter::kBilinear, true)), pinned.tight);
            EXPECT_EQ(HashOf(TableOf(pinned.axis, Filter::kFaded)), pinned.faded);
            if (pinned.spline) {
                EXPECT_EQ(HashOf(TableOf(pinned.axis, Filter::kSpline)), pinned.spline);
            }
        }
}

}  // namespace
}  // namespace pxb::test
