// usage: processors_test plain|mmx|sse2
//
// Runs every conversion of the shared library and compares all bytes, also those around the images,
// with arithmetic written apart from it. The argument says what the library should make of the
// processor at hand: without SIMD, with MMX, or with SSE2 or more.
#include <PxbLib.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "old_caller.h"
#include "reference.h"

namespace {

constexpr const char* kFormatNames[] = {"",     "RGB24", "RGB32",  "YV12",   "YUY2",
                                        "I420", "RGB8",  "YUV422", "AYUV32", "NV12"};

struct Pair {
    PixelFormat from;
    std::vector<PixelFormat> to;
};

const Pair kPairs[] = {
    {PXB_RGB24, {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420}},
    {PXB_RGB32, {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420, PXB_AYUV32, PXB_NV12}},
    {PXB_YV12, {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420}},
    {PXB_YUY2, {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420, PXB_YUV422}},
    {PXB_I420, {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420}},
    {PXB_RGB8, {PXB_RGB24}},
    {PXB_YUV422, {PXB_RGB24, PXB_YUY2}},
    {PXB_AYUV32, {PXB_RGB32}},
    {PXB_NV12, {PXB_RGB32}},
};

struct Size {
    int width, height;
};

struct Sizes {
    Size src, dst;
};

constexpr Sizes kSizes[] = {
    {{2, 2}, {2, 2}},     {{64, 6}, {64, 6}}, {{50, 4}, {50, 4}}, {{35, 5}, {35, 5}},
    {{131, 3}, {131, 3}}, {{34, 4}, {40, 7}}, {{16, 7}, {31, 9}}, {{1, 1}, {1, 1}},
    {{66, 8}, {48, 5}},   {{96, 7}, {37, 4}},  // the destination is smaller
};

class Random {
  public:
    std::uint32_t Next() {
        state_ ^= state_ << 13, state_ ^= state_ >> 17, state_ ^= state_ << 5;
        return state_;
    }
    // One byte in four is an extreme.
    std::uint8_t Sample() {
        constexpr std::array<std::uint8_t, 8> kExtremes = {0, 1, 16, 127, 128, 235, 254, 255};
        const std::uint32_t bits = Next() >> 8;
        return (bits & 0x300) ? static_cast<std::uint8_t>(bits) : kExtremes[bits & 7];
    }

  private:
    std::uint32_t state_ = 2463534242u;
};

int BytesPerPixel(PixelFormat format) {
    switch (format) {
        case PXB_RGB24:
            return 3;
        case PXB_RGB32:
        case PXB_AYUV32:
            return 4;
        case PXB_YUY2:
        case PXB_YUV422:
            return 2;
        default:
            return 1;
    }
}

// Random bytes with an image somewhere inside, its rows longer than its pixels.
class Image {
  public:
    Image(PixelFormat format, Size size, bool bottom_up, Random& random) {
        const int stride = BytesPerPixel(format) * (size.width + 1) + 6;
        const std::ptrdiff_t row = stride;
        bytes_.resize(static_cast<std::size_t>(2 * row * (size.height + 2) + 2 * kMargin));
        std::generate(bytes_.begin(), bytes_.end(), [&] { return random.Sample(); });
        record_ = {nullptr, 0, stride, size.width, size.height, format, nullptr};
        first_byte_ = kMargin;
        if (bottom_up) {
            first_byte_ += row * (size.height - 1);
            record_.stride = -stride;
        }
    }

    ImageBuffer Record() {
        record_.data = bytes_.data() + first_byte_;
        return record_;
    }
    const std::vector<std::uint8_t>& Bytes() const { return bytes_; }

  private:
    static constexpr int kMargin = 509;  // odd: rows start at any alignment
    std::vector<std::uint8_t> bytes_;
    std::ptrdiff_t first_byte_;
    ImageBuffer record_;
};

class Test {
  public:
    explicit Test(Processor processor) : processor_(processor) {}

    void Compare(PixelFormat from, PixelFormat to, Sizes sizes, bool bottom_up) {
        Image src(from, sizes.src, bottom_up, random_), dst(to, sizes.dst, false, random_);
        Image expected = dst;
        const Image src_before = src;
        ConvertByReference(expected.Record(), src.Record(), processor_);

        const ImageBuffer src_record = src.Record();
        ImageBuffer dst_record = dst.Record();
        const int misalignment = static_cast<int>(random_.Next() % 4) * 4;
        const CallOutcome outcome = ConvertAsOldCaller(&dst_record, &src_record, misalignment);

        ++comparisons_;
        if (outcome.result == PXB_SUCCESS && outcome.x87_is_empty &&
            dst.Bytes() == expected.Bytes() && src.Bytes() == src_before.Bytes())
            return;
        ++failures_;
        std::printf("%s %dx%d%s to %s %dx%d: ", kFormatNames[from], sizes.src.width,
                    sizes.src.height, bottom_up ? " bottom up" : "", kFormatNames[to],
                    sizes.dst.width, sizes.dst.height);
        if (outcome.result != PXB_SUCCESS)
            std::printf("result %d\n", static_cast<int>(outcome.result));
        else if (!outcome.x87_is_empty)
            std::puts("x87 registers are left in use");
        else if (src.Bytes() != src_before.Bytes())
            std::puts("the source has changed");
        else
            PrintFirstDifference(dst, expected);
    }

    int Report() const {
        std::printf("%d conversions compared, %d failed\n", comparisons_, failures_);
        return failures_ == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    }

  private:
    static void PrintFirstDifference(Image& dst, const Image& expected) {
        const auto [got, wanted] =
            std::mismatch(dst.Bytes().begin(), dst.Bytes().end(), expected.Bytes().begin());
        std::printf("byte %d after the start of the image is %d, expected %d\n",
                    static_cast<int>(&*got - dst.Record().data), *got, *wanted);
    }

    Processor processor_;
    Random random_;
    int comparisons_ = 0, failures_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    const std::string_view argument = argc == 2 ? argv[1] : "";
    const auto known = {std::pair{"plain", Processor::kPlain}, std::pair{"mmx", Processor::kMmx},
                        std::pair{"sse2", Processor::kSse2}};
    const auto found = std::find_if(known.begin(), known.end(),
                                    [&](const auto& k) { return k.first == argument; });
    if (found == known.end()) {
        std::fputs("usage: processors_test plain|mmx|sse2\n", stderr);
        return 2;
    }
    Test test(found->second);
    for (const auto& [from, destinations] : kPairs)
        for (const PixelFormat to : destinations)
            for (const Sizes& sizes : kSizes)
                for (const bool bottom_up : {false, true}) {
                    if (bottom_up && from != PXB_RGB24 && from != PXB_RGB32) continue;
                    // Grey images are walked by their own size, which has to fit.
                    if (from == PXB_RGB8 && sizes.src.width > sizes.dst.width) continue;
                    test.Compare(from, to, sizes, bottom_up);
                }
    return test.Report();
}
