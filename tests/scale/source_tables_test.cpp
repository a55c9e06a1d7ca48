// Positions and weights, pinned. The values come from the same steps in another language's doubles.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "scale/source_table.h"

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

}  // namespace
}  // namespace pxb::test
