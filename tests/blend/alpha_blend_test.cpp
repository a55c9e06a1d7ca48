// PxbAlphaBlend in every variant against one sample at a time, and what it answers.
#include <gtest/gtest.h>

#include <cstring>

#include "support/effort.h"
#include "support/trial.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

struct Job {
    const char* name;
    int format;
    bool has_plane;  // alpha comes from a plane, not from the source's fourth byte
};
constexpr Job kJobs[] = {
    {"RGB24", PXB_RGB24, true}, {"RGB32", PXB_RGB32, true}, {"RGB32, own alpha", PXB_RGB32, false},
    {"YUY2", PXB_YUY2, true},   {"I420", PXB_I420, true},   {"YV12", PXB_YV12, true}};

constexpr Byte Mixed(int d, int s, int alpha) {
    constexpr int kLift = 256;  // makes what is divided positive
    return static_cast<Byte>(((s - d) * alpha + kLift * 256) / 256 - kLift + d);
}
static_assert(Mixed(0, 255, 255) == 254 && Mixed(255, 0, 255) == 0 && Mixed(200, 100, 0) == 200);
static_assert(Mixed(0, 255, 128) == 127 && Mixed(255, 0, 128) == 127 && Mixed(10, 11, 255) == 10);

// Rectangles of this size from each top left corner on.
struct Area {
    int width, height, dst_left, dst_top, src_left, src_top;
};

// visit(d, s, a) for each sample, in order: offsets from the data of the images and, with a plane,
// from that of a plane with this stride.
template <class Visit>
void ForSamples(const Job& job, const ImageBuffer& dst, const ImageBuffer& src, Int alpha_stride,
                const Area& area, const Visit& visit) {
    const int bytes = BytesPerPixel(job.format);
    for (int i = 0; i < area.height; ++i)
        for (int j = 0; j < area.width; ++j) {
            const Int to_x = area.dst_left + j, to_y = area.dst_top + i;
            const Int from_x = area.src_left + j, from_y = area.src_top + i;
            const Int to = to_y * dst.stride + to_x * bytes;
            const Int from = from_y * src.stride + from_x * bytes;
            const Int alpha = job.has_plane ? from_y * alpha_stride + from_x : from + 3;
            for (int k = 0; k < std::min(bytes, 3); ++k) visit(to + k, from + k, alpha);
            if (!Is420(job.format) || i % 2 || j % 2) continue;
            const Int to_luma = Int{dst.stride} * dst.height;
            const Int from_luma = Int{src.stride} * src.height;
            const Int to_sample = to_y / 2 * (dst.stride / 2) + to_x / 2;
            const Int from_sample = from_y / 2 * (src.stride / 2) + from_x / 2;
            if (to_sample >= to_luma / 4 || from_sample >= from_luma / 4) continue;
            visit(to_luma + to_sample, from_luma + from_sample, alpha);
            visit(to_luma + to_luma / 4 + to_sample, from_luma + from_luma / 4 + from_sample,
                  alpha);
        }
}

void BlendByModel(const Job& job, const ImageBuffer& dst, const ImageBuffer& src,
                  const ImageBuffer& alpha, const Area& area) {
    const Byte* const alphas = job.has_plane ? alpha.data : src.data;
    ForSamples(job, dst, src, alpha.stride, area, [&](Int d, Int s, Int a) {
        dst.data[d] = Mixed(dst.data[d], src.data[s], alphas[a]);
    });
}

std::int32_t Blend(const Job& job, ImageBuffer* dst, const ImageBuffer* src,
                   const ImageBuffer* alpha, const Area& area) {
    const auto rect = [&](int left, int top) {
        return Rect{left, top, left + area.width, top + area.height};
    };
    const Rect to = rect(area.dst_left, area.dst_top), from = rect(area.src_left, area.src_top);
    return PxbAlphaBlend(dst, src, job.has_plane ? alpha : nullptr, &to, &from);
}

// The samples of pixel p of 2^16 are p % 256 and p / 256; 4:2:0: those of a block of four pixels,
// of which the odd ones have another alpha.
void ExpectEveryValue(const Job& job) {
    const int scale = Is420(job.format) ? 2 : 1, side = 256 * scale;
    const Area all = {side, side, 0, 0, 0, 0};
    const Image before(job.format, {side, side}), src(job.format, {side, side}),
        plane(PXB_RGB8, {side, side});
    const Image& alphas = job.has_plane ? plane : src;
    for (int turn = 0; turn < 256; ++turn) {
        if (!IsTried(turn)) continue;
        ForSamples(job, before.record, src.record, side, all, [&](Int d, Int s, Int a) {
            const Int p = job.has_plane ? a : a / 4, x = p % side / scale, y = p / side / scale;
            before.record.data[d] = static_cast<Byte>(x);
            src.record.data[s] = static_cast<Byte>(y);
            alphas.record.data[a] = static_cast<Byte>(x * 7 + y + turn + p % 2 * 100);
        });
        Image expected(job.format, {side, side}), dst(job.format, {side, side});
        expected.Tile(before.First(before.bytes));
        BlendByModel(job, expected.record, src.record, plane.record, all);
        for (const Variant& variant : RunnableVariants()) {
            const ForcedProcessor forced(variant.words);
            dst.Tile(before.First(before.bytes));
            ASSERT_EQ(Blend(job, &dst.record, &src.record, &plane.record, all), PXB_SUCCESS);
            ASSERT_TRUE(dst == expected) << variant.name << ", turn " << turn;
        }
    }
}

TEST(AlphaBlend, EveryValue) {
    for (const Job& job : kJobs) ASSERT_NO_FATAL_FAILURE(ExpectEveryValue(job)) << job.name;
}

// Blends between three pieces of guarded memory.
class BlendTrial : public Trial {
  public:
    BlendTrial() {
        const std::vector<Byte> noise = Noise(GuardedMemory::kArea, 3);
        std::memcpy(alpha_memory_.First(), noise.data(), noise.size());
        alpha_memory_.ForbidWriting();
    }

    // Images end where the rectangles do or a little later; their rows have padding of any size.
    void Run(const Job& job, const Area& area) {
        ++number_;
        const auto describe = [&](int format, int left, int top, int salt) {
            const Size size = {left + area.width + number_ % (2 + salt),
                               top + area.height + number_ % (3 + salt) / 2};
            return Describe(format, size, number_ % 5, !Is420(format) && number_ % 7 == salt);
        };
        ImageBuffer dst = describe(job.format, area.dst_left, area.dst_top, 0);
        ImageBuffer src = describe(job.format, area.src_left, area.src_top, 1);
        ImageBuffer alpha = describe(PXB_RGB8, area.src_left, area.src_top, 2);
        Visited to, from, weights;
        ForSamples(job, dst, src, alpha.stride, area, [&](Int d, Int s, Int a) {
            to.luma.Add(d, 1), from.luma.Add(s, 1), weights.luma.Add(a, 1);
        });
        if (job.format == PXB_RGB32) ++to.luma.end, ++from.luma.end;  // the fourth byte
        const Placement placement = number_ % 2 ? Placement::kFront : Placement::kBack;
        Place(dst, dst_memory, to, placement);
        Place(src, src_memory, from, placement);
        Place(alpha, alpha_memory_, weights, placement);
        const auto model = [&](const ImageBuffer& d, const ImageBuffer& s) {
            BlendByModel(job, d, s, alpha, area);
        };
        const auto blend = [&](ImageBuffer* d, const ImageBuffer* s) {
            return Blend(job, d, s, &alpha, area);
        };
        for (const Variant& variant : variants_) {
            const ForcedProcessor forced(variant.words);
            ASSERT_TRUE(Compare(dst, src, model, blend))
                << job.name << ", " << variant.name << ", number " << number_ << ": " << area.width
                << " x " << area.height << " from " << area.src_left << ", " << area.src_top
                << " to " << area.dst_left << ", " << area.dst_top;
        }
    }

  private:
    const std::vector<Variant> variants_ = RunnableVariants();
    GuardedMemory alpha_memory_;
    int number_ = 0;
};

// Of every width, and at every small offset: also where blocks of four pixels begin at odd places
// and end beyond the chroma of their image.
TEST(AlphaBlend, Rectangles) {
    BlendTrial trial;
    std::vector<Area> areas;
    for (int width = 0; width <= 130; ++width)
        for (int turn = width; turn < width + 3; ++turn)
            areas.push_back(
                {width, (2 * turn - width) % 6, turn % 3, turn % 2, turn % 5, turn / 2 % 3});
    for (int i = 0; i < 256; i += kThorough ? 1 : 7)
        for (const Size size : {Size{1, 1}, Size{5, 2}, Size{35, 3}})
            areas.push_back({size.width, size.height, i % 4, i / 4 % 4, i / 16 % 4, i / 64});
    for (const Job& job : kJobs)
        for (const Area& area : areas) ASSERT_NO_FATAL_FAILURE(trial.Run(job, area));
}

struct Call {
    Image dst, src, given{PXB_RGB8, {4, 4}, 3}, own{PXB_RGB8, {4, 4}, 4},
        unused{PXB_RGB8, {4, 4}, 5};

    explicit Call(int format) : dst(format, {4, 4}, 1), src(format, {4, 4}, 2) {
        src.record.alpha = &own.record;
        dst.record.alpha = &unused.record;
    }
    std::int32_t Run(const ImageBuffer* alpha, const Rect* to = nullptr,
                     const Rect* from = nullptr) {
        return PxbAlphaBlend(&dst.record, &src.record, alpha, to, from);
    }
    bool HasWritten() const { return dst.HasChanged() || src.HasChanged() || unused.HasChanged(); }
};

// The given plane first, else the source's companion; RGB32 does not ask the companion.
TEST(AlphaBlend, FindsItsAlpha) {
    for (int format = PXB_RGB24; format <= PXB_I420; ++format)
        for (const bool is_given : {true, false})
            for (const bool has_data : {true, false}) {
                SCOPED_TRACE(testing::Message() << kFormatNames[format] << is_given << has_data);
                Call call(format);
                if (!has_data) call.given.record.data = nullptr;
                const ImageBuffer* const alpha = is_given ? &call.given.record : nullptr;
                ASSERT_EQ(call.Run(alpha), PXB_SUCCESS);
                const bool takes_given = is_given && has_data;
                const Job job = {"", format, takes_given || format != PXB_RGB32};
                const Image expected(format, {4, 4}, 1);
                BlendByModel(job, expected.record, call.src.record,
                             (takes_given ? call.given : call.own).record, {4, 4, 0, 0, 0, 0});
                EXPECT_TRUE(call.dst == expected && !call.unused.HasChanged());
                if (format == PXB_RGB32 || takes_given) continue;
                call.own.record.data = nullptr;
                EXPECT_EQ(call.Run(alpha), PXB_FAILURE);
                call.src.record.alpha = nullptr;
                EXPECT_EQ(call.Run(alpha), PXB_FAILURE);
                EXPECT_TRUE(call.dst == expected && !call.unused.HasChanged());
            }
}

// Each call has a fault of a check that comes before those that the others would fail.
TEST(AlphaBlend, ChecksInOrder) {
    const Rect outside = {0, 0, 5, 4};
    for (int format = -1; format <= 11; ++format) {
        SCOPED_TRACE(format);
        Call call(format);
        const std::int32_t by_format = format < 1 || format > 7 ? PXB_BAD_ARGUMENT
                                       : format > 5             ? PXB_UNSUPPORTED
                                                                : PXB_FAILURE;
        EXPECT_EQ(call.Run(nullptr, &outside), by_format);
        call.own.record.data = nullptr;
        EXPECT_EQ(call.Run(nullptr, &outside), by_format);
        for (ImageBuffer* image : {&call.src.record, &call.dst.record}) {
            Byte* const data = image->data;
            image->data = nullptr;
            EXPECT_EQ(call.Run(nullptr, &outside), PXB_BAD_ARGUMENT);
            image->data = data;
        }
        ++call.src.record.format;
        EXPECT_EQ(call.Run(nullptr, &outside), PXB_BAD_ARGUMENT);
        EXPECT_FALSE(call.HasWritten());
    }
}

// Each pair in both directions.
TEST(AlphaBlend, RefusesRectangles) {
    constexpr Rect kPairs[][2] = {{{-1, 0, 3, 4}, {0, 0, 4, 4}}, {{0, -1, 4, 3}, {0, 0, 4, 4}},
                                  {{1, 0, 5, 4}, {0, 0, 4, 4}},  {{0, 1, 4, 5}, {0, 0, 4, 4}},
                                  {{0, 0, 3, 4}, {0, 0, 4, 4}},  {{0, 0, 4, 3}, {0, 0, 4, 4}},
                                  {{0, 0, 2, 3}, {0, 0, 3, 2}},  {{2, 0, 1, 4}, {3, 0, 2, 4}},
                                  {{0, 2, 4, 1}, {0, 3, 4, 2}},  {{0, 0, -1, 4}, {0, 0, -1, 4}}};
    constexpr Rect kEmpty[] = {{4, 0, 4, 4}, {0, 0, 0, 4}, {0, 4, 4, 4}, {0, 1, 4, 1}},
                   kSmaller = {0, 0, 3, 4}, kPixel = {0, 0, 1, 1};
    for (int format = PXB_RGB24; format <= PXB_I420; ++format) {
        SCOPED_TRACE(kFormatNames[format]);
        Call call(format);
        for (const auto& [a, b] : kPairs) {
            EXPECT_EQ(call.Run(nullptr, &a, &b), PXB_FAILURE) << a.left << " " << a.top;
            EXPECT_EQ(call.Run(nullptr, &b, &a), PXB_FAILURE) << a.left << " " << a.top;
        }
        EXPECT_EQ(call.Run(nullptr, &kEmpty[0], &kEmpty[1]), PXB_SUCCESS);
        EXPECT_EQ(call.Run(nullptr, &kEmpty[2], &kEmpty[3]), PXB_SUCCESS);
        EXPECT_EQ(call.Run(nullptr, nullptr, &kSmaller), PXB_FAILURE);
        EXPECT_EQ(call.Run(nullptr, &kSmaller, nullptr), PXB_FAILURE);
        for (std::int32_t ImageBuffer::*extent : {&ImageBuffer::width, &ImageBuffer::height}) {
            call.dst.record.*extent = -4;  // no pixels, wherever a rectangle lies
            EXPECT_EQ(call.Run(nullptr), PXB_FAILURE);
            EXPECT_EQ(call.Run(nullptr, &kPixel, &kPixel), PXB_SUCCESS);
            call.dst.record.*extent = 4;
        }
        EXPECT_FALSE(call.HasWritten());
    }
}

}  // namespace
}  // namespace pxb::test
