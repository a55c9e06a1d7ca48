#include "convert/conversion_trial.h"

#include <algorithm>

namespace pxb::test {
namespace {

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

void ConversionTrial::PlaceBoth(ImageBuffer& dst, ImageBuffer& src, Placement placement) const {
    // A copy between planar images places the planes of the destination by the common height.
    bool split_src = placement == Placement::kSplit && Is420(src.format);
    bool split_dst = placement == Placement::kSplit && !split_src && Is420(dst.format);
    if (Walk(dst, src).Of(src).chroma.IsEmpty() || Walk(dst, src).Of(dst).luma.IsEmpty())
        split_src = split_dst = false;
    if (split_src) MakeTall(src, Walk(dst, src));
    if (split_dst) MakeTall(dst, Walk(dst, src));
    const Walk walk(dst, src);
    const auto place = [&](ImageBuffer& image, const GuardedMemory& memory, bool split) {
        const bool whole = placement == Placement::kSplit && !split;
        Place(image, memory, walk.Of(image), whole ? Placement::kBack : placement);
    };
    place(src, src_memory, split_src);
    place(dst, dst_memory, split_dst);
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
                ImageBuffer dst = Describe(to, Enlarged(size, number_, 1), number_ % 5,
                                           can_turn(to) && number_ % 7 == 3);
                ImageBuffer src =
                    Describe(from, src_size, number_ % 4, can_turn(from) && number_ % 7 == 5);
                PlaceBoth(dst, src, placement);
                const auto result = Compare(dst, src, reference, convert);
                if (!result)
                    return testing::AssertionFailure() << width << " x " << height << ", number "
                                                       << number_ << ": " << result.message();
            }
    return testing::AssertionSuccess();
}

}  // namespace pxb::test
