#include "fuzz/rotations.h"

#include <cstdlib>

#include "core/float_guard.h"
#include "transform/sine_cosine.h"

namespace pxb::test {
namespace {

constexpr bool IsPlanar(int format) {
    return format == PXB_YV12 || format == PXB_I420;
}

// The exact copies go by the size of the destination. At 180 they step through it by the stride of
// the source.
void KeepWithinSource(ImageBuffer& dst, const ImageBuffer& src, int angle) {
    if (IsPlanar(dst.format)) return;
    const Int all_bits = Int{src.width} * src.bitsPerPixel;
    const int across = static_cast<int>(all_bits / std::max(dst.bitsPerPixel, 1));
    const auto cut = [&](int width, int height) {
        dst.width = std::min(dst.width, width), dst.height = std::min(dst.height, height);
    };
    if (angle == 180) cut(across, src.height);
    if (angle == 90 || angle == 270) cut(src.height, across);
    if (angle == 180 && std::abs(dst.stride) < std::abs(src.stride)) dst.stride = src.stride;
    if (angle == 180 && (dst.stride < 0) != (src.stride < 0)) dst.stride = -dst.stride;
}

Visited VisitedBy(const ImageBuffer& image) {
    Visited visited;
    if (!HasPixelsByModel(image)) return visited;
    if (IsPlanar(image.format)) {
        const Int luma = Int{image.stride} * image.height;
        visited.luma.Add(0, Int{image.width} * image.height);
        for (const Int plane : {luma, luma + luma / 4})
            visited.chroma.Add(plane, Int{image.width / 2} * (image.height / 2));
        return visited;
    }
    for (Int y = 0; y < image.height; ++y)
        visited.luma.Add(y * image.stride, Int{image.width} * (image.bitsPerPixel / 8));
    return visited;
}

std::int32_t RotationByReference(const ImageBuffer& dst, const ImageBuffer& src, const Turn& turn) {
    constexpr std::int32_t kAnswers[] = {2, 0, 0, 0, 1, 0, 0, 1, 2, 2};
    if (dst.format != src.format || !dst.data || !src.data) return PXB_BAD_ARGUMENT;
    const bool known = src.format > 0 && src.format <= kFormats;
    const std::int32_t answer = known ? kAnswers[src.format] : PXB_BAD_ARGUMENT;
    if (answer == PXB_SUCCESS && HasPixelsByModel(dst) && HasPixelsByModel(src) &&
        std::min({dst.width, dst.height, src.width, src.height}) > 0)
        RotateByReference(dst, src, turn);
    return dst.alpha && src.alpha ? RotationByReference(*dst.alpha, *src.alpha, turn) : answer;
}

// By itself: the guard gives back the x87 registers as they were, so none may be in use around it.
__attribute__((noinline)) void ComputeTurn(Turn* turn) {
    plain::ComputeSineAndCosine((turn->angle / 180.0) * 3.1415926535898, &turn->sine,
                                &turn->cosine);
}

}  // namespace

Turn TurnOf(int angle) {
    Turn turn;
    turn.angle = angle;
    const FloatGuard guard;
    ComputeTurn(&turn);
    return turn;
}

void CheckRotation(Stage& stage, ImageBuffer dst, ImageBuffer src, const Turn& turn) {
    ImageBuffer dst_alpha, src_alpha;
    KeepWithinSource(dst, src, turn.angle);
    if (dst.alpha) dst_alpha = *dst.alpha, dst.alpha = &dst_alpha;
    if (src.alpha) src_alpha = *src.alpha, src.alpha = &src_alpha;
    if (dst.alpha && src.alpha) KeepWithinSource(dst_alpha, src_alpha, turn.angle);
    stage.Write(dst, VisitedBy(dst));
    stage.Read(src, VisitedBy(src));
    if (dst.alpha) stage.Write(dst_alpha, VisitedBy(dst_alpha));
    if (src.alpha) stage.Read(src_alpha, VisitedBy(src_alpha));
    stage.Compare([&](::Processor) { return RotationByReference(dst, src, turn); },
                  [&] { return CallExport(PxbRotate, &dst, &src, turn.angle); });
}

namespace {

int AnyAngle(Bytes& bytes) {
    constexpr int kAngles[] = {90, 180, 270, 0, 45, 360, -90, 1, 89, 450, INT32_MIN, INT32_MAX};
    switch (bytes.Below(4)) {
        case 0:
            return bytes.Between(1, 359);
        case 1:
            return bytes.OneIn(4) ? static_cast<int>(bytes.Take(4)) : bytes.Between(-32768, 32767);
        default:
            return bytes.Pick(kAngles);
    }
}

// Rows of planes follow one another without padding.
ImageBuffer PlanesOf(int format, Size size) {
    return Describe(format, {size.width / 2 * 2, size.height / 2 * 2});
}

}  // namespace

void FuzzRotation(Bytes& bytes) {
    constexpr int kDepths[][2] = {{24, 24}, {32, 32}, {24, 24}, {32, 32}, {24, 32}, {32, 24},
                                  {8, 8},   {16, 16}, {12, 24}, {40, 40}, {31, 39}};
    const Turn turn = TurnOf(AnyAngle(bytes));
    const int format = bytes.OneIn(3)    ? bytes.Between(1, 6)
                       : bytes.OneIn(16) ? AnyFormat(bytes)
                                         : bytes.Between(PXB_RGB24, PXB_RGB32);
    const bool turned = turn.angle % 180 != 0;
    const Size size = AnySize(bytes), swapped = {size.height, size.width};
    Size to = turned ? swapped : size;
    if (bytes.OneIn(4) && !IsPlanar(format)) to = AnySize(bytes);
    const auto& [dst_bits, src_bits] = bytes.Pick(kDepths);
    const auto record = [&](Size extents, int bits) {
        ImageBuffer image = Describe(format, extents);
        image.bitsPerPixel = bits;
        image.stride = extents.width * std::max(bits / 8, BytesPerPixel(format)) +
                       (bytes.OneIn(2) ? 0 : bytes.Below(20));
        return image;
    };
    ImageBuffer dst = record(to, dst_bits), src = record(size, src_bits);
    if (IsPlanar(format)) dst = PlanesOf(format, to), src = PlanesOf(format, size);
    if (bytes.OneIn(5) && !Is420(format)) dst.stride = -dst.stride, src.stride = -src.stride;
    if (bytes.OneIn(30)) MakeAbsurd(bytes, bytes.OneIn(2) ? dst : src);
    if (bytes.OneIn(40)) dst.format = AnyFormat(bytes);
    ImageBuffer dst_alpha = Describe(PXB_RGB8, to), src_alpha = Describe(PXB_RGB8, size);
    if (bytes.OneIn(4)) dst.alpha = &dst_alpha;
    if (bytes.OneIn(4)) src.alpha = &src_alpha;
    Stage stage(bytes);
    CheckRotation(stage, dst, src, turn);
}

}  // namespace pxb::test
