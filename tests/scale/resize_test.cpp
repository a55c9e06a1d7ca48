// Scaling, byte for byte beside the reference: every mode and layout in guarded memory, extreme
// ratios, results, companions, and callers with odd floating-point environments.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>

#include "core/float_guard.h"
#include "scaling.h"
#include "support/effort.h"
#include "support/float_environment.h"
#include "support/trial.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

constexpr std::int32_t kModes[] = {0, 1, 2, 3, 4, 5, 6, 7, -1, INT32_MIN};

// The records' bits rule, also against their format.
struct Layout {
    int format, dst_bits, src_bits;
};
constexpr Layout kLayouts[] = {
    {PXB_RGB24, 24, 24}, {PXB_RGB32, 32, 32}, {PXB_RGB8, 8, 8},   {PXB_YV12, 12, 12},
    {PXB_I420, 12, 12},  {PXB_YUY2, 16, 16},  {PXB_RGB8, 24, 32}, {PXB_RGB32, 32, 24},
};
constexpr Layout kOddLayouts[] = {
    {PXB_RGB8, 15, 8},    {PXB_RGB24, 31, 24}, {PXB_RGB24, 39, 31}, {PXB_RGB32, 24, 8},
    {PXB_RGB32, 8, 24},   {PXB_RGB8, 16, 16},  {PXB_RGB24, 0, 0},   {PXB_RGB8, 7, 8},
    {PXB_RGB24, -24, 24}, {PXB_RGB32, 40, 40}, {PXB_RGB8, 32, 8},
};

// Null where no mode is read.
const std::int32_t* ModeFor(int format, const std::int32_t& mode) {
    return format == PXB_YUY2 ? nullptr : &mode;
}

struct Side {
    ImageBuffer record;
    Rect rect;
    bool whole;  // the rectangle is the whole image
};

Size SizeOf(const Rect& rect) {
    return {rect.right - rect.left, rect.bottom - rect.top};
}

Visited VisitedBy(const Side& side, Int bytes, Int bits_of_column) {
    const auto& [image, rect, whole] = side;
    const Int stride = image.stride, luma = stride * image.height, half = stride / 2;
    const auto [width, height] = SizeOf(rect);
    Visited visited;
    for (Int y = rect.top; y < rect.bottom; ++y)
        visited.luma.Add(y * stride + bits_of_column * rect.left / 8, width * bytes);
    for (Int y = rect.top / 2; Is420(image.format) && y < rect.top / 2 + height / 2; ++y)
        for (const Int plane : {luma, luma + luma / 4})
            visited.chroma.Add(plane + y * half + rect.left / 2, width / 2);
    return visited;
}

// Images that fit into guarded memory, different ones at every call.
class Shapes {
  public:
    static int MostColumns(bool planar, int bytes) { return planar ? 4300 : 6200 / bytes; }
    static int MostRows(bool planar, int bytes, int width) {
        const int area = GuardedMemory::kArea;
        return std::max(
            1, planar ? area * 2 / 3 / (width + 12) - 5 : area / ((width + 5) * bytes + 7));
    }
    int Width(int most) {
        return std::min(1 + Random(Random(4) ? 70 : Random(2) ? 300 : most), most);
    }
    int Height(int most) { return 1 + Random(std::min(70, most)); }
    // Often a whole number of times as large or small, or equal.
    int Beside(int other, int any, int most) {
        const int factor = 1 + Random(5);
        const int choices[] = {any, any, other, other * factor, other / factor, other + 1};
        return std::clamp(choices[Random(6)], 1, most);
    }
    Side Around(int format, int bits, int bytes, Size size, bool bottom_up) {
        const bool is_flat = Is420(format) && (size.width + 12) * (size.height + 5) > 5400;
        const bool whole = is_flat || Random(2) == 0;
        const int left = whole ? 0 : Random(4), top = whole ? 0 : Random(4);
        const int right = left + size.width, bottom = top + size.height;
        ImageBuffer record = {nullptr, bits, 0, right, bottom, format, nullptr};
        if (!whole) record.width += Random(3), record.height += Random(3);
        record.stride = record.width * bytes + Random(8);
        if (bottom_up) record.stride = -record.stride;
        return {record, {left, top, right, bottom}, whole};
    }
    int Random(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }

  private:
    std::mt19937 random_;
};

class ResizeTrial : private Trial {
  public:
    void Run(const Layout& layout, std::int32_t mode) {
        const int dst_bytes = BytesOf(layout.format, layout.dst_bits);
        const int src_bytes = BytesOf(layout.format, layout.src_bits);
        const bool planar = Is420(layout.format);
        const int dst_columns = Shapes::MostColumns(planar, dst_bytes);
        const int src_columns = Shapes::MostColumns(planar, src_bytes);
        const int width = shapes_.Width(dst_columns);
        const int height = shapes_.Height(Shapes::MostRows(planar, dst_bytes, width));
        const int src_width = shapes_.Beside(width, shapes_.Width(src_columns), src_columns);
        const int src_rows = Shapes::MostRows(planar, src_bytes, src_width);
        const int src_height = shapes_.Beside(height, shapes_.Height(src_rows), src_rows);
        Side dst = shapes_.Around(layout.format, layout.dst_bits, dst_bytes, {width, height},
                                  !planar && shapes_.Random(5) == 0);
        Side src = shapes_.Around(layout.format, layout.src_bits, src_bytes,
                                  {src_width, src_height}, !planar && shapes_.Random(5) == 0);
        PlaceBoth(dst, dst_bytes, src, src_bytes, layout.dst_bits);
        const bool rectangles = !dst.whole || !src.whole || shapes_.Random(4) == 0;
        const Rect* const to = dst.whole && shapes_.Random(2) ? nullptr : &dst.rect;
        const Rect* const from = src.whole && shapes_.Random(2) ? nullptr : &src.rect;
        const std::int32_t* const wanted = ModeFor(layout.format, mode);
        std::vector<Converter> converters;
        for (const Variant& variant : RunnableVariants())
            converters.push_back([=](ImageBuffer* d, const ImageBuffer* s) {
                const ForcedProcessor forced(variant.words);
                return rectangles ? PxbResizeEx(d, s, wanted, to, from) : PxbResize(d, s, wanted);
            });
        const auto reference = [&](const ImageBuffer& d, const ImageBuffer& s) {
            const FloatGuard guard;
            rectangles ? ResizeExByReference(d, s, wanted, to, from)
                       : ResizeByReference(d, s, wanted);
        };
        EXPECT_TRUE(CompareEach(dst.record, src.record, reference, converters))
            << kFormatNames[layout.format] << " of " << layout.dst_bits << " from "
            << layout.src_bits << " bits, mode " << mode << ": " << Describe(src) << " to "
            << Describe(dst) << (rectangles ? ", with rectangles" : "");
    }

  private:
    static int BytesOf(int format, int bits) {
        return format == PXB_YUY2 ? 2 : std::max(1, Is420(format) ? 1 : bits / 8);
    }
    static std::string Describe(const Side& side) {
        const auto& [left, top, right, bottom] = side.rect;
        std::ostringstream text;
        text << right - left << " x " << bottom - top << " at " << left << ", " << top
             << " of stride " << side.record.stride;
        return text.str();
    }
    void PlaceBoth(Side& dst, int dst_bytes, Side& src, int src_bytes, int dst_bits) {
        const auto placement = static_cast<Placement>(shapes_.Random(3));
        for (Side* side : {&dst, &src}) {
            const bool is_dst = side == &dst;
            const Int bits = side->record.format == PXB_YUY2 ? 16
                             : Is420(side->record.format)    ? 8
                                                             : dst_bits;
            const auto visited = [&] {
                return VisitedBy(*side, is_dst ? dst_bytes : src_bytes, bits);
            };
            Placement here = placement;
            if (here == Placement::kSplit && visited().chroma.IsEmpty()) here = Placement::kBack;
            if (here == Placement::kSplit) {  // a page between luma and chroma
                const Int gap = visited().luma.end + Int{GuardedMemory::kPage};
                side->record.height = static_cast<std::int32_t>(gap / side->record.stride + 1);
                side->whole = false;
            }
            Place(side->record, is_dst ? dst_memory : src_memory, visited(), here);
        }
    }

    Shapes shapes_;
};

TEST(Resize, GivesTheBytesOfTheReference) {
    constexpr int kTrials = kThorough ? 30 : 5;
    ResizeTrial trial;
    for (const Layout& layout : kLayouts)
        for (const std::int32_t mode : kModes)
            for (int i = 0; i < kTrials && !HasFailure(); ++i) trial.Run(layout, mode);
}

TEST(Resize, GoesByTheBitsOfTheRecords) {
    ResizeTrial trial;
    for (const Layout& layout : kOddLayouts)
        for (const std::int32_t mode : kModes)
            for (int i = 0; i < 2 && !HasFailure(); ++i) trial.Run(layout, mode);
}

// ---- Images of their own ----

int BitsOf(int format) {
    return format == PXB_RGB24 ? 24 : format == PXB_RGB32 ? 32 : 8;
}

// By the library, in whatever variant is chosen.
Image ResizedByLibrary(const Image& src, Size size, std::int32_t mode) {
    Image dst(src.record.format, size, 2);
    EXPECT_EQ(PxbResize(&dst.record, &src.record, ModeFor(src.record.format, mode)), PXB_SUCCESS);
    return dst;
}

Image ResizedByReference(const Image& src, Size size, std::int32_t mode) {
    Image dst(src.record.format, size, 2);
    const FloatGuard guard;
    ResizeByReference(dst.record, src.record, &mode);
    return dst;
}

void ExpectLikeReference(int format, Size from, Size to, std::int32_t mode) {
    const Image src(format, from, 1), wanted = ResizedByReference(src, to, mode);
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        EXPECT_TRUE(ResizedByLibrary(src, to, mode) == wanted)
            << variant.name << ", " << kFormatNames[format] << ", mode " << mode << ", "
            << from.width << " x " << from.height << " to " << to.width << " x " << to.height;
    }
}

// Many steps of a position add up their rounding, so that only literal sums give these bytes.
TEST(Resize, KeepsToLiteralPositionsOnLongAxes) {
    constexpr struct {
        Size from, to;
    } kCases[] = {
        {{32767, 2}, {2, 2}},    {{2, 2}, {32767, 2}},    {{2, 32767}, {2, 2}},
        {{2, 2}, {2, 32767}},    {{32767, 1}, {1, 3}},    {{1, 1}, {32767, 2}},
        {{9973, 3}, {6007, 2}},  {{6007, 2}, {9973, 3}},  {{2, 5003}, {3, 9973}},
        {{1920, 13}, {1280, 9}}, {{1280, 9}, {1920, 13}}, {{1919, 18}, {961, 9}},
    };
    for (const auto& [from, to] : kCases)
        for (const int format : {PXB_RGB24, PXB_RGB8, PXB_I420, PXB_YUY2})
            for (const std::int32_t mode : {0, 1, 2, 6}) {
                if (format == PXB_YUY2 && mode != 1) continue;
                if (kThorough || (from.width + to.height + format + mode) % 7 == 0)
                    ExpectLikeReference(format, from, to, mode);
            }
}

// Where shuffles of every reach are needed, just not enough, or of no use.
TEST(Resize, GivesTheBytesOfTheReferenceAtEveryRatio) {
    for (int width = 2; width <= 150; width += width < 24 ? 2 : 14)
        for (const int percent :
             {30, 66, 67, 100, 149, 150, 151, 199, 200, 201, 300, 400, 500, 900})
            for (const int format : {PXB_RGB24, PXB_RGB32, PXB_RGB8, PXB_YUY2})
                for (const std::int32_t mode : {0, 1, 2, 6}) {
                    if (format == PXB_YUY2 && mode != 1) continue;
                    if (!kThorough && (width / 2 + percent + format + mode) % 9 != 0) continue;
                    ExpectLikeReference(format, {std::max(2, width * percent / 100), 8},
                                        {width, percent < 100 ? 20 : 5}, mode);
                }
}

TEST(Resize, EnvironmentOfTheCallerDoesNotMatter) {
    const FloatEnvironment before = FloatEnvironmentNow();
    for (const int format : {PXB_RGB24, PXB_RGB8, PXB_I420, PXB_YUY2})
        for (const std::int32_t mode : {0, 1, 2, 6}) {
            const Size to = {67, 5};
            const Image src(format, {181, 12}, 1);
            const Image wanted = ResizedByReference(src, to, mode);
            Image dst(format, to, 2);
            for (const FloatEnvironment& environment : kFloatEnvironments) {
                dst.Tile(Image(format, to, 2).First(dst.bytes));
                SwitchTo(environment);
                const FloatEnvironment switched = FloatEnvironmentNow();
                PxbResize(&dst.record, &src.record, ModeFor(format, mode));
                const FloatEnvironment after = FloatEnvironmentNow();
                ComputeWithX87();
                SwitchTo(before);
                EXPECT_TRUE(after == switched && dst == wanted)
                    << kFormatNames[format] << ", mode " << mode << ", " << std::hex
                    << environment.x87_control << " " << environment.x87_status << " "
                    << environment.mxcsr;
            }
        }
}

// ---- Results ----

struct ResizeCall {
    int dst_format, src_format;
    bool has_dst = true, has_src = true;
    std::optional<Rect> to = {}, from = {};
    Size dst = {8, 6}, src = {12, 10};
};

// Both by the reference and by the library, with and without companions; they must agree in what
// they answer and write. Returns the answer without companions.
std::int32_t Answer(const ResizeCall& c, bool extended, const std::int32_t* mode) {
    std::int32_t results[2] = {};
    for (const bool companions : {true, false}) {
        const auto run = [&](bool reference, std::vector<Byte>& bytes) {
            bytes = Noise(4000, 3);
            const auto record = [&](int at, int format, Size size, bool data, ImageBuffer* alpha) {
                Byte* const first = data ? &bytes[at] : nullptr;
                const auto [width, height] = size;
                return ImageBuffer{first, BitsOf(format), 48, width, height, format, alpha};
            };
            ImageBuffer dst_alpha = record(1000, PXB_RGB8, {8, 6}, true, nullptr);
            ImageBuffer src_alpha = record(3000, PXB_RGB8, {12, 10}, true, nullptr);
            ImageBuffer dst =
                record(0, c.dst_format, c.dst, c.has_dst, companions ? &dst_alpha : nullptr);
            const ImageBuffer src = record(2000, c.src_format, c.src, c.has_src, &src_alpha);
            const Rect* const to = c.to ? &*c.to : nullptr;
            const Rect* const from = c.from ? &*c.from : nullptr;
            const FloatGuard guard;
            if (reference)
                return extended ? ResizeExByReference(dst, src, mode, to, from)
                                : ResizeByReference(dst, src, mode);
            return extended ? PxbResizeEx(&dst, &src, mode, to, from) : PxbResize(&dst, &src, mode);
        };
        std::vector<Byte> got, wanted;
        results[companions] = run(false, got);
        EXPECT_EQ(results[companions], run(true, wanted));
        EXPECT_EQ(got, wanted);
    }
    return results[false];
}

TEST(Resize, AnswersAndVisitsCompanionsAsStated) {
    for (const int format : {PXB_YUV422, PXB_AYUV32, PXB_NV12}) {
        Image src(format, {4, 4}, 1), dst(format, {6, 6}, 2);
        EXPECT_EQ(PxbResize(&dst.record, &src.record, nullptr),
                  format == PXB_YUV422 ? PXB_UNSUPPORTED : PXB_BAD_ARGUMENT);
        EXPECT_FALSE(dst.HasChanged());
    }
    const std::int32_t mode = 1;
    for (const bool extended : {false, true})
        for (int format = -1; format <= 10; ++format) {
            SCOPED_TRACE(testing::Message() << "format " << format << (extended ? ", Ex" : ""));
            const std::int32_t served = format == PXB_YUV422 ? PXB_UNSUPPORTED
                                        : format >= PXB_RGB24 && format <= PXB_RGB8
                                            ? PXB_SUCCESS
                                            : PXB_BAD_ARGUMENT;
            EXPECT_EQ(Answer({format, format}, extended, &mode), served);
            EXPECT_EQ(Answer({format, format % 9 + 1}, extended, &mode), PXB_BAD_ARGUMENT);
            EXPECT_EQ(Answer({format, format, false}, extended, &mode), PXB_BAD_ARGUMENT);
            EXPECT_EQ(Answer({format, format, true, false}, extended, &mode), PXB_BAD_ARGUMENT);
            // Nothing to do: the companions are scaled all the same.
            for (const Size empty : {Size{0, 6}, Size{8, 0}}) {
                EXPECT_EQ(Answer({format, format, true, true, {}, {}, empty}, extended, &mode),
                          served);
                EXPECT_EQ(
                    Answer({format, format, true, true, {}, {}, {8, 6}, empty}, extended, &mode),
                    served);
            }
            for (const Size negative : {Size{-8, 6}, Size{8, -6}, Size{INT32_MIN, INT32_MIN}})
                EXPECT_EQ(Answer({format, format, true, true, {}, {}, negative}, extended, &mode),
                          extended ? PXB_BAD_ARGUMENT : served);
        }
    for (const int format : {PXB_RGB24, PXB_I420, PXB_YUY2, PXB_YUV422, PXB_AYUV32}) {
        SCOPED_TRACE(testing::Message() << "format " << format);
        const std::int32_t served = Answer({format, format}, true, &mode);
        for (const Rect good :
             {Rect{0, 0, 8, 6}, Rect{1, 1, 7, 5}, Rect{3, 2, 3, 5}, Rect{8, 6, 8, 6}})
            for (const bool is_dst : {true, false}) {
                const std::optional<Rect> to = is_dst ? std::optional(good) : std::nullopt;
                const std::optional<Rect> from = is_dst ? std::nullopt : std::optional(good);
                EXPECT_EQ(Answer({format, format, true, true, to, from}, true, &mode), served);
            }
        for (const Rect bad :
             {Rect{0, -1, 8, 6}, Rect{-1, 0, 8, 6}, Rect{0, 0, 13, 6}, Rect{0, 0, 8, 11},
              Rect{0, 4, 8, 3}, Rect{4, 0, 3, 6}, Rect{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX},
              Rect{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN}}) {
            EXPECT_EQ(Answer({format, format, true, true, bad, {}}, true, &mode), PXB_BAD_ARGUMENT);
            EXPECT_EQ(Answer({format, format, true, true, {}, bad}, true, &mode), PXB_BAD_ARGUMENT);
        }
    }
}

}  // namespace
}  // namespace pxb::test
