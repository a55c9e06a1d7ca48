// Scaling: every mode, layout, ratio and rectangle.
#include "scaling.h"

#include "fuzz/stage.h"

namespace pxb::test {
namespace {

// The records' bits rule, also against their format.
struct ScaledLayout {
    int format, dst_bits, src_bits;
};
constexpr ScaledLayout kUsual[] = {
    {PXB_RGB24, 24, 24}, {PXB_RGB32, 32, 32}, {PXB_RGB8, 8, 8},   {PXB_YV12, 12, 12},
    {PXB_I420, 12, 12},  {PXB_YUY2, 16, 16},  {PXB_RGB8, 24, 32}, {PXB_RGB32, 32, 24},
};
constexpr ScaledLayout kUnusual[] = {
    {PXB_RGB8, 15, 8},    {PXB_RGB24, 31, 24}, {PXB_RGB24, 39, 31}, {PXB_RGB32, 24, 8},
    {PXB_RGB32, 8, 24},   {PXB_RGB8, 16, 16},  {PXB_RGB24, 0, 0},   {PXB_RGB8, 7, 8},
    {PXB_RGB24, -24, 24}, {PXB_RGB32, 40, 40}, {PXB_RGB8, 32, 8},   {PXB_YUV422, 16, 16},
    {PXB_AYUV32, 32, 32}, {PXB_NV12, 12, 12},  {0, 24, 24},         {INT32_MAX, 8, 8},
};

// One image, and the rectangle of it that takes part.
struct ScaledSide {
    ImageBuffer image;
    Rect rect;
    bool whole;
};

int BytesOfPixel(int format, int bits) {
    return format == PXB_YUY2 ? 2 : std::max(1, Is420(format) ? 1 : bits / 8);
}

// Columns of both images are counted by the bits of the destination.
Visited VisitedBy(const ImageBuffer& image, const Rect& rect, int dst_bits) {
    const Int bytes = BytesOfPixel(image.format, image.bitsPerPixel), stride = image.stride;
    const Int bits = image.format == PXB_YUY2 ? 16 : Is420(image.format) ? 8 : dst_bits;
    const Int luma = stride * image.height, width = Int{rect.right} - rect.left;
    const int half_top = rect.top / 2;
    Visited visited;
    if (!LiesInByModel(rect, image) || !HasPixelsByModel(image)) return visited;
    for (Int y = rect.top; y < rect.bottom; ++y)
        visited.luma.Add(y * stride + bits * rect.left / 8, width * bytes);
    for (Int y = half_top; Is420(image.format) && y < half_top + (rect.bottom - rect.top) / 2; ++y)
        for (const Int plane : {luma, luma + luma / 4})
            visited.chroma.Add(plane + y * (stride / 2) + rect.left / 2, width / 2);
    return visited;
}

// Often a whole number of times as large or small, or equal.
int Beside(Bytes& bytes, int other, int any) {
    const int factor = bytes.Between(1, 9);
    const int choices[] = {any, any, other, other * factor, other / factor, other + 1};
    return std::min(bytes.Pick(choices), 220);
}

ScaledSide AnySide(Bytes& bytes, int format, int bits, Size size) {
    const bool whole = bytes.OneIn(2);
    const int left = whole ? 0 : bytes.Below(5), top = whole ? 0 : bytes.Below(4);
    const Rect rect = {left, top, left + size.width, top + size.height};
    const int right = whole ? 0 : bytes.Below(4), bottom = whole ? 0 : bytes.Below(3);
    ImageBuffer image = Describe(format, {rect.right + right, rect.bottom + bottom});
    image.bitsPerPixel = bits;
    image.stride = image.width * BytesOfPixel(format, bits) + bytes.Below(8);
    if (!Is420(format) && bytes.OneIn(5)) image.stride = -image.stride;
    if (!whole) MaybeTall(bytes, image);
    return {image, rect, whole};
}

std::int32_t AnyMode(Bytes& bytes) {
    constexpr std::int32_t kModes[] = {0, 1, 2, 3, 4, 5, 6, 6, 7, -1, INT32_MIN};
    return bytes.Pick(kModes);
}

// Rectangles outside, extents that mean nothing.
void MaybeRefused(Bytes& bytes, ScaledSide& side) {
    if (bytes.OneIn(16)) side.rect = AnyRect(bytes, {side.image.width, side.image.height});
    if (bytes.OneIn(40)) MakeAbsurd(bytes, side.image);
}

}  // namespace

void FuzzScaling(Bytes& bytes) {
    const ScaledLayout layout = bytes.OneIn(8) ? bytes.Pick(kUnusual) : bytes.Pick(kUsual);
    const std::int32_t mode = AnyMode(bytes);
    const Size size = AnySize(bytes), other = AnySize(bytes);
    ScaledSide dst = AnySide(bytes, layout.format, layout.dst_bits, size);
    ScaledSide src =
        AnySide(bytes, layout.format, layout.src_bits,
                {Beside(bytes, size.width, other.width), Beside(bytes, size.height, other.height)});
    const bool rectangles = !dst.whole || !src.whole || bytes.OneIn(4);
    MaybeRefused(bytes, dst);
    MaybeRefused(bytes, src);
    if (bytes.OneIn(30)) dst.image.format = AnyFormat(bytes);
    const bool has_companions = bytes.OneIn(5);
    const Rect* const to = dst.whole && bytes.OneIn(2) ? nullptr : &dst.rect;
    const Rect* const from = src.whole && bytes.OneIn(2) ? nullptr : &src.rect;
    const bool reads_mode = layout.format != PXB_YUY2 || has_companions || bytes.OneIn(2);
    const std::int32_t* const wanted = reads_mode ? &mode : nullptr;

    const auto visited = [&](const ImageBuffer& image, const ScaledSide& side, int dst_bits) {
        const Rect whole = {0, 0, image.width, image.height};
        const bool has_rect = rectangles && (&side == &dst ? to : from);
        return VisitedBy(image, has_rect ? side.rect : whole, dst_bits);
    };
    Stage stage(bytes);
    ImageBuffer dst_alpha = AnyRecord(bytes, PXB_RGB8, {dst.image.width, dst.image.height});
    ImageBuffer src_alpha = AnyRecord(bytes, PXB_RGB8, {src.image.width, src.image.height});
    stage.Write(dst.image, visited(dst.image, dst, layout.dst_bits));
    stage.Read(src.image, visited(src.image, src, layout.dst_bits));
    if (has_companions) {
        stage.Write(dst_alpha, visited(dst_alpha, dst, 8));
        stage.Read(src_alpha, visited(src_alpha, src, 8));
    }
    if (has_companions || bytes.OneIn(8)) dst.image.alpha = &dst_alpha;
    if (has_companions) src.image.alpha = &src_alpha;
    if (bytes.OneIn(60)) dst.image.data = nullptr;
    if (bytes.OneIn(60)) src.image.data = nullptr;
    stage.Compare(
        [&](::Processor) {
            return rectangles ? ResizeExByReference(dst.image, src.image, wanted, to, from)
                              : ResizeByReference(dst.image, src.image, wanted);
        },
        [&] {
            return rectangles ? CallExport(PxbResizeEx, &dst.image, &src.image, wanted, to, from)
                              : CallExport(PxbResize, &dst.image, &src.image, wanted);
        });
}

}  // namespace pxb::test
