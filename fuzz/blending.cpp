#include "fuzz/blending.h"

namespace pxb::test {
namespace {

struct BlendCall {
    ImageBuffer dst, src, given, own;  // planes of alpha: given, and the companion of the source
    const ImageBuffer* alpha;
    const Rect *to_rect, *from_rect;
    Rect to, from;

    bool HasOwnBytes() const { return src.format == PXB_RGB32; }
    // Null: none, or that the source's fourth bytes are taken.
    const ImageBuffer* Plane() const {
        if (alpha && alpha->data) return alpha;
        const bool has_own = !HasOwnBytes() && src.alpha && src.alpha->data;
        return has_own ? src.alpha : nullptr;
    }
    BlendJob Job() const { return {src.format, Plane() != nullptr}; }
    bool HasGoodRectangles() const {
        // Those that are turned round fail even where the image's extents are negative.
        const auto fits = [](const Rect& r, const ImageBuffer& image) {
            const auto within = [](std::int32_t end, std::int32_t extent) {
                return static_cast<std::uint32_t>(end) <= static_cast<std::uint32_t>(extent);
            };
            return r.left >= 0 && r.top >= 0 && r.left <= r.right && r.top <= r.bottom &&
                   within(r.right, image.width) && within(r.bottom, image.height);
        };
        return fits(to, dst) && fits(from, src) &&
               Int{to.right} - to.left == from.right - from.left &&
               Int{to.bottom} - to.top == from.bottom - from.top;
    }
    std::int32_t Answer() const {
        if (dst.format != src.format || !dst.data || !src.data) return PXB_BAD_ARGUMENT;
        if (src.format < PXB_RGB24 || src.format > PXB_YUV422) return PXB_BAD_ARGUMENT;
        if (src.format > PXB_I420) return PXB_UNSUPPORTED;
        if (!Plane() && !HasOwnBytes()) return PXB_FAILURE;
        return HasGoodRectangles() ? PXB_SUCCESS : PXB_FAILURE;
    }
    bool Draws() const {
        return Answer() == PXB_SUCCESS && HasPixelsByModel(dst) && HasPixelsByModel(src);
    }
};

// A plane of alpha reaches as far as the rectangle of the source.
ImageBuffer AlphaFor(Bytes& bytes, const ImageBuffer& src) {
    return AnyRecord(bytes, PXB_RGB8, {src.width + bytes.Below(4), src.height + bytes.Below(2)});
}

ImageBuffer ImageAround(Bytes& bytes, int format, const Rect& rect) {
    const bool ends = bytes.OneIn(2);
    return AnyRecord(
        bytes, format,
        {rect.right + (ends ? 0 : bytes.Below(4)), rect.bottom + (ends ? 0 : bytes.Below(4))});
}

Rect RectAt(Bytes& bytes, Size size, bool whole) {
    const int left = whole ? 0 : bytes.Below(9), top = whole ? 0 : bytes.Below(5);
    return {left, top, left + size.width, top + size.height};
}

}  // namespace

void FuzzBlending(Bytes& bytes) {
    const int format = bytes.OneIn(16) ? AnyFormat(bytes) : bytes.Between(PXB_RGB24, PXB_I420);
    const Size size = AnySize(bytes);
    BlendCall call = {};
    const bool to_whole = bytes.OneIn(3), from_whole = bytes.OneIn(3);
    call.to = RectAt(bytes, size, to_whole), call.from = RectAt(bytes, size, from_whole);
    call.dst = ImageAround(bytes, format, call.to);
    call.src = ImageAround(bytes, format, call.from);
    if (bytes.OneIn(24)) call.to = AnyRect(bytes, size);
    if (bytes.OneIn(24)) call.from = AnyRect(bytes, size);
    if (bytes.OneIn(24)) MakeAbsurd(bytes, bytes.OneIn(2) ? call.dst : call.src);
    if (bytes.OneIn(40)) call.dst.format = AnyFormat(bytes);
    if (!(to_whole && bytes.OneIn(2))) call.to_rect = &call.to;
    if (!(from_whole && bytes.OneIn(2))) call.from_rect = &call.from;
    if (!call.to_rect) call.to = {0, 0, call.dst.width, call.dst.height};
    if (!call.from_rect) call.from = {0, 0, call.src.width, call.src.height};
    call.given = AlphaFor(bytes, call.src), call.own = AlphaFor(bytes, call.src);
    const bool is_given = !bytes.OneIn(3), has_own = bytes.OneIn(2) || !is_given;
    const bool has_data = !bytes.OneIn(8), own_has_data = !bytes.OneIn(20);
    const bool dst_has_data = !bytes.OneIn(50), src_has_data = !bytes.OneIn(50);

    // Addresses come later; until then any stand for them.
    Byte any = 0;
    call.given.data = has_data ? &any : nullptr, call.own.data = own_has_data ? &any : nullptr;
    call.dst.data = call.src.data = &any;
    call.alpha = is_given ? &call.given : nullptr;
    if (has_own) call.src.alpha = &call.own;
    Visited to, from, weights;
    const bool draws = call.Draws(), uses_given = call.Plane() == &call.given;
    if (draws) {
        const Int alpha_stride = call.Plane() ? call.Plane()->stride : 0;
        const Int to_luma = Is420(format) ? Int{call.dst.stride} * call.dst.height : INT64_MAX;
        const Int from_luma = Is420(format) ? Int{call.src.stride} * call.src.height : INT64_MAX;
        ForBlendedSamples(call.Job(), call.dst, call.src, alpha_stride, call.to, call.from,
                          [&](Int d, Int s, Int a) {
                              (d < to_luma ? to.luma : to.chroma).Add(d, 1);
                              (s < from_luma ? from.luma : from.chroma).Add(s, 1);
                              weights.luma.Add(a, 1);
                          });
        if (format == PXB_RGB32 && !to.luma.IsEmpty()) ++to.luma.end, ++from.luma.end;
    }
    const bool has_plane = call.Plane() != nullptr;
    Stage stage(bytes);
    stage.Write(call.dst, to);
    stage.Read(call.src, from);
    stage.Read(call.given, has_plane && uses_given ? weights : Visited{});
    stage.Read(call.own, has_plane && !uses_given ? weights : Visited{});
    if (!has_data) call.given.data = nullptr;
    if (!own_has_data) call.own.data = nullptr;
    if (!dst_has_data) call.dst.data = nullptr;
    if (!src_has_data) call.src.data = nullptr;
    stage.Compare(
        [&](::Processor) {
            if (call.Draws())
                BlendByModel(call.Job(), call.dst, call.src, has_plane ? *call.Plane() : call.own,
                             call.to, call.from);
            return call.Answer();
        },
        [&] {
            return CallExport(PxbAlphaBlend, &call.dst, &call.src, call.alpha, call.to_rect,
                              call.from_rect);
        });
}

}  // namespace pxb::test
