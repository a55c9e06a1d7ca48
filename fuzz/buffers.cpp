#include "fuzz/buffers.h"

#include <cstdlib>
#include <cstring>

#include "core/studio_color.h"

namespace pxb::test {
namespace {

struct PaintedLayout {
    std::vector<Byte> group;  // what repeats in a row
    int pixels;               // in a group
    int padding;              // what padding becomes; -1: it stays
};

PaintedLayout LayoutOf(int format, const Rgb& c) {
    const Yuv yuv = StudioYuv(c);
    switch (format) {
        case PXB_RGB24:
            return {{c.b, c.g, c.r}, 1, -1};
        case PXB_RGB32:
            return {{c.b, c.g, c.r, 0}, 1, -1};
        case PXB_YUY2:
            return {{yuv.y, yuv.u, yuv.y, yuv.v}, 2, -1};
        case PXB_YUV422:
            return {{yuv.u, yuv.y, yuv.v, yuv.y}, 2, -1};
        case PXB_RGB8:
            return {{static_cast<Byte>((c.r + c.g + c.b) / 3)}, 1, 0};
        default:
            return {{yuv.y}, 1, yuv.y};
    }
}

Rgb RgbOf(std::uint32_t code) {  // 0xBBGGRR
    return {static_cast<Byte>(code), static_cast<Byte>(code >> 8), static_cast<Byte>(code >> 16)};
}

bool IsPaintable(const ImageBuffer& image) {
    return image.format >= PXB_RGB24 && image.format <= PXB_YUV422;
}

Visited VisitedByFill(const ImageBuffer& image) {
    Visited visited;
    if (!IsPaintable(image) || !HasPixelsByModel(image)) return visited;
    const PaintedLayout layout = LayoutOf(image.format, {});
    const int group = static_cast<int>(layout.group.size());
    const bool pads = layout.padding >= 0 && image.stride > 0;
    const Int row = pads ? image.stride : Int{image.width} / layout.pixels * group;
    for (Int y = 0; y < image.height; ++y) visited.luma.Add(y * image.stride, row);
    const Int luma = Int{image.stride} * image.height;
    if (Is420(image.format)) visited.chroma.Add(luma, luma / 4 * 2);
    return visited;
}

}  // namespace

void PaintByModel(const ImageBuffer& image, std::uint32_t color) {
    const PaintedLayout layout = LayoutOf(image.format, RgbOf(color));
    const int group = static_cast<int>(layout.group.size());
    for (int y = 0; y < image.height; ++y)
        for (int i = 0; i < std::abs(image.stride); ++i) {
            Byte* const at = image.data + Int{y} * image.stride + i;
            if (i / group < image.width / layout.pixels)
                *at = layout.group[i % group];
            else if (layout.padding >= 0 && image.stride > 0)
                *at = static_cast<Byte>(layout.padding);
        }
    if (!Is420(image.format)) return;
    const Yuv yuv = StudioYuv(RgbOf(color));
    const std::size_t luma = std::size_t(image.stride) * image.height;
    const bool v_first = image.format == PXB_YV12;
    std::memset(image.data + luma, v_first ? yuv.v : yuv.u, luma / 4);
    std::memset(image.data + luma + luma / 4, v_first ? yuv.u : yuv.v, luma / 4);
}

void CheckFill(Stage& stage, ImageBuffer image, std::uint32_t color, bool has_data) {
    ImageBuffer companion = Describe(PXB_RGB8, {image.width, image.height});
    stage.Write(image, VisitedByFill(image));
    stage.Read(companion, {});
    image.alpha = &companion;
    if (!has_data) image.data = nullptr;
    stage.Compare(
        [&](::Processor) {
            if (!image.data || !IsPaintable(image)) return PXB_BAD_ARGUMENT;
            if (HasPixelsByModel(image)) PaintByModel(image, color);
            return PXB_SUCCESS;
        },
        [&] { return CallExport(PxbFillColor, &image, color); });
}

// ---- Any arguments ----

namespace {

struct NewShape {
    Int width, height, stride, bytes;
};

// Of a request that is not negative; for an unknown format that of its companion.
NewShape ShapeOfNew(int format, Int width, Int height) {
    constexpr Int kBits[] = {0, 24, 32, 12, 16, 12, 8, 16, 32, 12};
    if (format == PXB_YUY2 || format == PXB_YUV422 || Is420(format)) width += width % 2;
    if (Is420(format)) height += height % 2;
    if (Is420(format)) return {width, height, width, width * height / 2 * 3};
    const Int stride = (width * kBits[format] / 8 + 3) / 4 * 4;
    const bool overflows = height > 0 && stride > Int{1} << 31;
    return {width, height, stride, overflows ? INT64_MAX : stride * height};
}

std::vector<std::int32_t> ShapeFieldsOf(const ImageBuffer& image) {
    return {image.width, image.height, image.stride, image.format};
}

void ExpectShape(const ImageBuffer& image, const NewShape& shape) {
    const auto low = [](Int n) { return static_cast<std::int32_t>(n); };
    Expect(ShapeFieldsOf(image) ==
               std::vector{low(shape.width), low(shape.height), low(shape.stride), image.format},
           "fields of a new image");
}

void ExpectNewPixels(const ImageBuffer& image, Int bytes) {
    Expect(reinterpret_cast<std::uintptr_t>(image.data) % 16 == 0, "misaligned pixels");
    const auto size = static_cast<std::size_t>(bytes);
    if (IsPaintable(image)) {
        std::vector<Byte> black(size + 1);  // never without data
        std::copy_n(image.data, size, black.data());
        ImageBuffer painted = image;
        painted.data = black.data();
        PaintByModel(painted, 0);
        Expect(std::equal(image.data, image.data + size, black.data()), "a new image is not black");
    }
    std::memset(image.data, 77, size);  // it is all there
}

void FuzzNew(Bytes& bytes) {
    constexpr std::int32_t kHuge[] = {46341, 65535, 65536, 1 << 30, INT32_MAX};
    const int format = bytes.Between(1, kFormats);
    Size size = AnySize(bytes);
    if (bytes.OneIn(3)) size.width = bytes.Pick(kHuge);
    if (bytes.OneIn(3)) size.height = bytes.Pick(kHuge);
    const NewShape shape = ShapeOfNew(format, size.width, size.height);
    const bool exists = shape.bytes < Int{1} << 31;
    if (exists && (shape.bytes > 1 << 18 || shape.height > 1 << 18)) return;  // takes long
    const bool has_alpha = exists && bytes.OneIn(2);
    ImageBuffer image = {nullptr, 0, 0, size.width, size.height, format, nullptr};
    const std::int32_t result = CallExport(PxbNew, &image, has_alpha);
    Expect(result == (exists ? PXB_SUCCESS : PXB_FAILURE), "result of PxbNew");
    Expect((image.data != nullptr) == exists && (image.alpha != nullptr) == has_alpha, "PxbNew");
    ExpectShape(image, shape);
    if (exists) ExpectNewPixels(image, shape.bytes);
    if (has_alpha) {
        const NewShape alpha = ShapeOfNew(PXB_RGB8, image.width, image.height);
        ExpectShape(*image.alpha, alpha);
        if (image.alpha->data) ExpectNewPixels(*image.alpha, alpha.bytes);
    }
    for (int twice = 0; twice < 2; ++twice)
        Expect(CallExport(PxbDelete, &image) == PXB_SUCCESS && !image.data && !image.alpha,
               "PxbDelete");
    ExpectShape(image, shape);
}

}  // namespace

void FuzzBuffers(Bytes& bytes) {
    if (bytes.OneIn(4)) return FuzzNew(bytes);
    const int format = bytes.OneIn(10) ? AnyFormat(bytes) : bytes.Between(1, PXB_YUV422);
    ImageBuffer image = AnyRecord(bytes, format, AnySize(bytes));
    MaybeTall(bytes, image);
    if (format == PXB_YUV422) image.stride *= 2;
    if (bytes.OneIn(30)) MakeAbsurd(bytes, image);
    const std::uint32_t color = bytes.Take(4);
    const bool has_data = !bytes.OneIn(30);
    Stage stage(bytes);
    CheckFill(stage, image, color, has_data);
}

}  // namespace pxb::test
