// Conversions and channels.
#include "convert/format_pairs.h"
#include "fuzz/stage.h"

namespace pxb::test {
namespace {

// The walk of one conversion: which pixels it visits, and where rows lean to the left.
struct ConversionWalk {
    const ImageBuffer &dst, &src;
    bool grey, whole;  // whole: odd columns and rows take part
    Int width, height, columns, rows, group, lean;

    ConversionWalk(const ImageBuffer& dst_, const ImageBuffer& src_) : dst(dst_), src(src_) {
        const bool to_rgb = IsRgb(dst.format), from_rgb = IsRgb(src.format);
        grey = src.format == PXB_RGB8;  // walked by the size of the source
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
        if (!HasPixelsByModel(dst) || !HasPixelsByModel(src)) return {};
        if (Is420(image.format)) return Planar420(image);
        return image.format == PXB_YUV422 ? Planar422() : Packed(image);
    }
};

// ---- Channels ----

constexpr int kLuma = 5;

std::int32_t AnswerOfConversion(int to, int from) {
    const auto is_known = [](int format) { return format >= 1 && format <= kFormats; };
    return is_known(to) && is_known(from) ? kResults[from - 1][to - 1] : PXB_BAD_ARGUMENT;
}

std::int32_t AnswerOfChannel(int format, int channel) {
    if (channel == kLuma) return PXB_SUCCESS;
    if (format < PXB_RGB24 || format > PXB_YUV422) return PXB_BAD_ARGUMENT;
    if (!IsRgb(format)) return PXB_UNSUPPORTED;
    if (channel < 1 || channel > 4) return PXB_BAD_ARGUMENT;
    return format == PXB_RGB24 && channel != 1 ? PXB_UNSUPPORTED : PXB_SUCCESS;
}

// The temporary image of channel 5.
ImageBuffer Yv12For(const ImageBuffer& src) {
    return Describe(PXB_YV12, {(src.width + 1) / 2 * 2, (src.height + 1) / 2 * 2});
}

// Channel 5 of a planar source with a negative stride is black.
bool Draws(const ImageBuffer& dst, const ImageBuffer& src, int channel) {
    const bool answers = channel == kLuma ? AnswerOfConversion(PXB_YV12, src.format) == PXB_SUCCESS
                                          : AnswerOfChannel(src.format, channel) == PXB_SUCCESS;
    const bool is_huge = channel == kLuma && Int{src.width} * src.height * 3 / 2 > INT32_MAX;
    return answers && HasPixelsByModel(dst) && src.width >= 0 && src.height >= 0 && !is_huge;
}

Visited VisitedByChannel(const ImageBuffer& image, const ImageBuffer& dst, const ImageBuffer& src,
                         int channel) {
    // The temporary image is made before the destination is looked at.
    const ImageBuffer yv12 = Yv12For(src), &luma = channel == kLuma ? yv12 : dst;
    if (!Draws(&image == &src ? luma : dst, src, channel)) return {};
    if (channel == kLuma && &image == &src) return ConversionWalk(yv12, src).Of(src);
    const ImageBuffer& area = channel == kLuma ? yv12 : src;
    const bool moves = channel != kLuma && &image == &dst;
    const Int stride = image.stride + (moves ? Int{src.width} - dst.width : 0);
    const Int bytes = &image == &dst ? 1 : BytesPerPixel(src.format);
    Visited visited;
    for (Int y = 0; y < area.height; ++y) visited.luma.Add(y * stride, area.width * bytes);
    return visited;
}

constexpr int Grey(int b, int g, int r) {
    return (38656 * g + 19712 * r + 7168 * b) / 65536;
}
static_assert(Grey(0, 255, 0) == 150 && Grey(0, 0, 255) == 76 && Grey(255, 0, 0) == 27);

// The luma of the conversion on black, rounded up to even.
void TakeLumaByReference(const ImageBuffer& dst, const ImageBuffer& src) {
    ImageBuffer yv12 = Yv12For(src);
    std::vector<Byte> planes(std::size_t(yv12.width) * yv12.height * 3 / 2 + 1, 16);
    yv12.data = planes.data();
    if (HasPixelsByModel(src)) ConvertByReference(yv12, src, ::Processor::kPlain);
    for (int y = 0; y < yv12.height; ++y)
        std::copy_n(planes.data() + y * yv12.width, yv12.width, dst.data + y * dst.stride);
}

// Where the widths differ, the destination advances by its stride and the difference.
std::int32_t ChannelByReference(const ImageBuffer& dst, const ImageBuffer& src, int channel) {
    if (!dst.data || !src.data) return PXB_BAD_ARGUMENT;
    const std::int32_t answer = AnswerOfChannel(src.format, channel);
    if (!Draws(dst, src, channel)) return answer;
    if (channel == kLuma) return TakeLumaByReference(dst, src), answer;
    const int step = dst.stride + src.width - dst.width;
    for (int y = 0; y < src.height; ++y)
        for (int x = 0; x < src.width; ++x) {
            const Byte* const p = src.data + y * src.stride + BytesPerPixel(src.format) * x;
            const int taken = src.format == PXB_RGB24 ? Grey(p[0], p[1], p[2]) : p[4 - channel];
            dst.data[y * step + x] = static_cast<Byte>(taken);
        }
    return answer;
}

// ---- Conversions ----

std::int32_t ConversionByReference(const ImageBuffer& dst, const ImageBuffer& src,
                                   ::Processor processor) {
    if (!dst.data || !src.data) return PXB_BAD_ARGUMENT;
    const std::int32_t answer = AnswerOfConversion(dst.format, src.format);
    if (answer == PXB_SUCCESS && HasPixelsByModel(dst) && HasPixelsByModel(src))
        ConvertByReference(dst, src, processor);
    if (src.format != PXB_RGB32 || !dst.alpha) return answer;
    return ChannelByReference(*dst.alpha, src, 1);
}

// The reference never works in place.
std::int32_t ConversionInPlace(const ImageBuffer& dst, ImageBuffer src, const Span& visited,
                               ::Processor processor) {
    const std::vector<Byte> copy(src.data + visited.first, src.data + visited.end);
    std::vector<Byte> pixels = copy;
    src.data = pixels.data() - visited.first;
    return ConversionByReference(dst, src, processor);
}

struct ConversionCall {
    ImageBuffer dst, src;  // without data, which the stage gives them; maybe with companions
    bool has_dst = true, has_src = true;
    bool in_place = false;  // both lie in the memory of `dst`
};

void CheckConversion(Stage& stage, ConversionCall call) {
    ImageBuffer &dst = call.dst, &src = call.src;
    const bool in_place = call.in_place && call.has_dst && call.has_src;
    const bool converts = AnswerOfConversion(dst.format, src.format) == PXB_SUCCESS;
    const ConversionWalk walk(dst, src);
    const Visited by_dst = converts ? walk.Of(dst) : Visited{};
    Visited by_src = converts ? walk.Of(src) : Visited{};
    ImageBuffer alpha;
    if (dst.alpha) {
        alpha = *dst.alpha, dst.alpha = &alpha;
        if (src.format == PXB_RGB32) by_src = by_src | VisitedByChannel(src, alpha, src, 1);
        stage.Write(alpha, VisitedByChannel(alpha, alpha, src, 1));
    }
    stage.Write(dst, by_dst);
    if (call.in_place)
        src.data = dst.data;
    else
        stage.Read(src, by_src);
    if (!call.has_dst) dst.data = nullptr;
    if (!call.has_src) src.data = nullptr;
    const Span span = by_src.All();
    stage.Compare(
        [&](::Processor processor) {
            return in_place && !span.IsEmpty() ? ConversionInPlace(dst, src, span, processor)
                                               : ConversionByReference(dst, src, processor);
        },
        [&] { return CallExport(PxbColorSpaceConv, &dst, &src); },
        IsRgb(dst.format) && !IsRgb(src.format));
}

void CheckChannel(Stage& stage, ConversionCall call, int channel) {
    ImageBuffer &dst = call.dst, &src = call.src;
    stage.Write(dst, VisitedByChannel(dst, dst, src, channel));
    stage.Read(src, VisitedByChannel(src, dst, src, channel));
    if (!call.has_dst) dst.data = nullptr;
    if (!call.has_src) src.data = nullptr;
    stage.Compare([&](::Processor) { return ChannelByReference(dst, src, channel); },
                  [&] { return CallExport(PxbChannelGet, &dst, &src, channel); });
}

// ---- Any arguments ----

Size AtLeast(Bytes& bytes, Size size) {
    if (bytes.OneIn(2)) size.width += bytes.Below(6);
    if (bytes.OneIn(2)) size.height += bytes.Below(5);
    return size;
}

// From and to.
std::pair<int, int> AnyPair(Bytes& bytes) {
    static const std::vector<FormatPair> pairs = PairsThatConvert();
    const FormatPair pair = pairs[bytes.Below(static_cast<int>(pairs.size()))];
    if (!bytes.OneIn(12)) return {pair.from, pair.to};
    const int from = AnyFormat(bytes), to = AnyFormat(bytes);
    return {from, to};
}

void MaybeRefused(Bytes& bytes, ConversionCall& call) {
    if (!bytes.OneIn(12)) return;
    if (bytes.OneIn(2)) MakeAbsurd(bytes, bytes.OneIn(2) ? call.dst : call.src);
    call.has_dst = !bytes.OneIn(6), call.has_src = !bytes.OneIn(6);
}

void FuzzChannel(Bytes& bytes) {
    constexpr int kChannels[] = {1, 2, 3, 4, 5, 0, 6, -1, INT32_MIN, INT32_MAX};
    const int channel = bytes.OneIn(8) ? bytes.Pick(kChannels) : bytes.Between(1, 5);
    const int format = bytes.OneIn(4) ? AnyFormat(bytes) : bytes.Between(PXB_RGB24, PXB_I420);
    const Size size = AnySize(bytes);
    const Size even = {(size.width + 1) / 2 * 2, (size.height + 1) / 2 * 2};
    ConversionCall call = {AnyRecord(bytes, PXB_RGB8, AtLeast(bytes, even)),
                           AnyRecord(bytes, format, size)};
    MaybeTall(bytes, call.src);
    MaybeRefused(bytes, call);
    if (channel == kLuma && bytes.OneIn(40)) call.src.width = call.src.height = 1 << 17;
    Stage stage(bytes);
    CheckChannel(stage, call, channel);
}

}  // namespace

void FuzzConversion(Bytes& bytes) {
    if (bytes.OneIn(5)) return FuzzChannel(bytes);
    const auto [from, to] = AnyPair(bytes);
    const Size size = AnySize(bytes);
    // Tight planar 4:2:2 has no rows to turn upside down, nor does its partner.
    const bool may_turn = from != PXB_YUV422 && to != PXB_YUV422;
    const Size to_size = AtLeast(bytes, size);
    const Size from_size = from == PXB_RGB8 ? size : AtLeast(bytes, size);
    ConversionCall call = {AnyRecord(bytes, to, to_size, may_turn),
                           AnyRecord(bytes, from, from_size, may_turn)};
    ImageBuffer alpha = AnyRecord(bytes, PXB_RGB8, AtLeast(bytes, from_size)), foreign = alpha;
    if (bytes.OneIn(4)) call.dst.alpha = &alpha, call.src.alpha = &foreign;
    const bool shares_bytes = BytesPerPixel(from) == 4 && BytesPerPixel(to) == 4;
    if (bytes.OneIn(6) && (from == to || shares_bytes)) {
        call.in_place = true, call.src = call.dst, call.src.format = from;
        if (IsRgb(from)) call.dst.alpha = nullptr;
    } else {
        MaybeTall(bytes, bytes.OneIn(2) ? call.dst : call.src);
    }
    MaybeRefused(bytes, call);
    Stage stage(bytes);
    CheckConversion(stage, call);
}

}  // namespace pxb::test
