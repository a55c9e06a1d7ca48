#include "convert/conversion_trial.h"

#include <algorithm>
#include <cstring>

#include "support/noise.h"

namespace pxb::test {
namespace {

using Int = std::int64_t;

// Offsets of the first byte and of the end of what is visited, from the image's data.
struct Span {
    Int first = INT64_MAX, end = INT64_MIN;

    void Add(Int offset, Int bytes) {
        if (bytes <= 0) return;
        first = std::min(first, offset);
        end = std::max(end, offset + bytes);
    }
    bool IsEmpty() const { return first > end; }
};

struct Visited {
    Span luma, chroma;  // packed images: all in luma

    Span All() const {
        return {std::min(luma.first, chroma.first), std::max(luma.end, chroma.end)};
    }
};

// The walk of one conversion: which pixels it visits, and where rows lean to the left.
struct Walk {
    const ImageBuffer &dst, &src;
    bool grey, whole;  // whole: odd columns and rows take part
    Int width, height, columns, rows, group, lean;

    Walk(const ImageBuffer& dst_, const ImageBuffer& src_) : dst(dst_), src(src_) {
        const bool to_rgb = IsRgb(dst.format), from_rgb = IsRgb(src.format);
        // Walked by the size of the source; rows of a destination of another width move.
        grey = src.format == PXB_RGB8 || dst.format == PXB_RGB8;
        whole = (to_rgb && from_rgb) || grey || (Is420(dst.format) && Is420(src.format)) ||
                (src.format == PXB_YUY2 && dst.format == PXB_YUY2) || src.format == PXB_AYUV32 ||
                dst.format == PXB_AYUV32;
        width = grey ? src.width : std::min(dst.width, src.width);
        height = grey ? src.height : std::min(dst.height, src.height);
        group = !whole && (Is420(dst.format) || Is420(src.format)) ? 2 : 1;
        columns = whole ? width : width / 2 * 2;
        rows = height / group * group;
        lean = to_rgb != from_rgb ? width - columns : 0;
    }

    Visited Packed(const ImageBuffer& image) const {
        const Int bytes = BytesPerPixel(image.format);
        Int stride = image.stride;
        if (dst.format == PXB_YUV422 || (src.format == PXB_YUV422 && dst.format == PXB_YUY2))
            stride = bytes * columns;
        if (grey && &image == &dst) stride += bytes * (width - dst.width);
        Visited visited;
        for (Int row = 0; row < rows; ++row)
            visited.luma.Add(row * stride - row / group * lean * bytes, columns * bytes);
        return visited;
    }

    Visited Planar422() const {
        const Int u = Int{dst.width} * height, v = u + dst.width / 2 * height;
        Visited visited;
        visited.luma.Add(0, rows * columns);
        visited.chroma.Add(u, rows * (columns / 2));
        visited.chroma.Add(v, rows * (columns / 2));
        return visited;
    }

    Visited Planar420(const ImageBuffer& image) const {
        const Int stride = image.stride;
        const Int first = stride * (whole && &image == &dst ? height : image.height);
        Visited visited;
        for (Int row = 0; row < rows; ++row)
            visited.luma.Add(row * stride - row / group * lean, columns);
        for (Int row = 0; row < height / 2; ++row) {
            if (image.format == PXB_NV12) {
                visited.chroma.Add(first + row * stride, columns);
            } else {
                visited.chroma.Add(first + row * (stride / 2), columns / 2);
                visited.chroma.Add(first + first / 4 + row * (stride / 2), columns / 2);
            }
        }
        return visited;
    }

    Visited Of(const ImageBuffer& image) const {
        if (Is420(image.format)) return Planar420(image);
        return image.format == PXB_YUV422 ? Planar422() : Packed(image);
    }
};

// Makes `planar` so tall that a page fits between its luma and its chroma.
void MakeTall(ImageBuffer& planar, const Walk& walk) {
    const Int gap = walk.Of(planar).luma.end + Int{GuardedMemory::kPage};
    planar.height = static_cast<int32_t>((gap + planar.stride - 1) / planar.stride);
}

// Equal sizes, a larger destination, or a larger source, in turn.
Size Enlarged(Size size, int number, int turn) {
    return number % 3 == turn ? Size{size.width + 1 + number % 4, size.height + 1 + number % 3}
                              : size;
}

}  // namespace

Reference ReferenceFor(::Processor processor) {
    return [processor](const ImageBuffer& dst, const ImageBuffer& src) {
        ConvertByReference(dst, src, processor);
    };
}

ConversionTrial::ConversionTrial()
    : background_(Noise(GuardedMemory::kSize, 1)), expected_(GuardedMemory::kSize) {
    const std::vector<std::uint8_t> pixels = Noise(2 * GuardedMemory::kArea, 2);
    std::memcpy(src_memory_.First(), pixels.data(), GuardedMemory::kArea);
    std::memcpy(src_memory_.Second(), pixels.data() + GuardedMemory::kArea, GuardedMemory::kArea);
    src_memory_.ForbidWriting();
}

void ConversionTrial::Place(ImageBuffer& dst, ImageBuffer& src, Placement placement) const {
    // A copy between planar images places the planes of the destination by the common height.
    bool split_src = placement == Placement::kSplit && Is420(src.format);
    bool split_dst = placement == Placement::kSplit && !split_src && Is420(dst.format);
    if (Walk(dst, src).Of(src).chroma.IsEmpty() || Walk(dst, src).Of(dst).luma.IsEmpty())
        split_src = split_dst = false;
    if (split_src) MakeTall(src, Walk(dst, src));
    if (split_dst) MakeTall(dst, Walk(dst, src));
    const Walk walk(dst, src);
    const auto place = [&](ImageBuffer& image, const GuardedMemory& memory, bool split) {
        const Visited visited = walk.Of(image);
        const Span all = visited.All();
        if (all.IsEmpty())
            image.data = memory.FirstEnd();
        else if (placement == Placement::kFront)
            image.data = memory.First() - all.first;
        else
            image.data = memory.FirstEnd() - (split ? visited.luma.end : all.end);
    };
    place(src, src_memory_, split_src);
    place(dst, dst_memory_, split_dst);
}

testing::AssertionResult ConversionTrial::Compare(ImageBuffer dst, ImageBuffer src,
                                                  Placement placement, const Reference& reference,
                                                  const Converter& convert) {
    Place(dst, src, placement);
    std::memcpy(expected_.data(), background_.data(), background_.size());
    std::uint8_t* const areas[] = {dst_memory_.First(), dst_memory_.Second()};
    const auto offset = [&](const std::uint8_t* p) { return p - dst_memory_.Base(); };
    for (std::uint8_t* area : areas)
        std::memcpy(area, background_.data() + offset(area), GuardedMemory::kArea);

    ImageBuffer expected = dst;
    expected.data = expected_.data() + offset(dst.data);
    reference(expected, src);
    const std::int32_t result = convert(&dst, &src);
    if (result != PXB_SUCCESS) return testing::AssertionFailure() << "result " << result;

    for (const std::uint8_t* area : areas) {
        const std::uint8_t* const wanted = expected_.data() + offset(area);
        if (std::memcmp(area, wanted, GuardedMemory::kArea) == 0) continue;
        const auto [got, want] = std::mismatch(area, area + GuardedMemory::kArea, wanted);
        return testing::AssertionFailure() << "byte " << got - dst.data << " after the data is "
                                           << int{*got} << ", expected " << int{*want};
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult ConversionTrial::Run(FormatPair pair, const std::vector<int>& widths,
                                              const Reference& reference,
                                              const Converter& convert) {
    const auto [from, to] = pair;
    // Tight planar 4:2:2 has no rows to turn upside down, nor does its partner; 4:2:0 neither.
    const bool has_422 = from == PXB_YUV422 || to == PXB_YUV422;
    const auto can_turn = [&](PixelFormat f) { return !Is420(f) && !has_422; };
    for (const int width : widths)
        for (int height = 0; height <= 5; ++height)
            for (const auto placement : {Placement::kFront, Placement::kBack, Placement::kSplit}) {
                ++number_;
                const Size size = {width, height};
                const bool grey = from == PXB_RGB8 || to == PXB_RGB8;  // the source has to fit
                const Size src_size = grey ? size : Enlarged(size, number_, 2);
                const auto result = Compare(
                    Describe(to, Enlarged(size, number_, 1), number_ % 5,
                             can_turn(to) && number_ % 7 == 3),
                    Describe(from, src_size, number_ % 4, can_turn(from) && number_ % 7 == 5),
                    placement, reference, convert);
                if (!result)
                    return testing::AssertionFailure() << width << " x " << height << ", number "
                                                       << number_ << ": " << result.message();
            }
    return testing::AssertionSuccess();
}

}  // namespace pxb::test
