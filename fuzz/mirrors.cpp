#include "fuzz/mirrors.h"

#include <cstring>

namespace pxb::test {
namespace {

// What a call changes. A sample goes from one offset from the data to another, or stays.
class Mirror {
  public:
    Mirror(Flip flip, const ImageBuffer& image, const Rect& r)
        : across_(flip == PxbFliphorizontal) {
        const Int bits_bytes = std::max(image.bitsPerPixel / 8, 0), stride = image.stride;
        const Int bytes = across_ || Is420(image.format) ? BytesPerPixel(image.format) : bits_bytes;
        const Int width = r.right - r.left;
        if (!HasPixelsByModel(image) || (across_ && image.format == PXB_RGB8)) return;
        const Area luma = {0, stride, r.left, r.top, width, r.bottom};
        if (!across_)
            ExchangeRows(luma, bytes);
        else if (image.format == PXB_YUY2)
            ReverseGroups(luma);
        else
            Exchange(luma, bytes, width);
        if (!Is420(image.format)) return;
        luma_end_ = stride * image.height;
        const Int u = luma_end_, v = u + (across_ ? image.height / 2 * (stride / 2) : u / 4);
        const Int chroma_width = across_ ? r.right / 2 - r.left / 2 : width / 2;
        for (const Int plane : {u, v}) {
            const Area chroma = {plane,     stride / 2,   r.left / 2,
                                 r.top / 2, chroma_width, r.top / 2 + (r.bottom - r.top) / 2};
            across_ ? Exchange(chroma, 1, width / 4) : ExchangeRows(chroma, 1);
        }
    }

    Visited WhatIsVisited() const {
        Visited visited;
        for (const Move& move : moves_)
            (move.to < luma_end_ ? visited.luma : visited.chroma).Add(move.to, move.bytes);
        for (const Move& rows : exchanged_rows_)
            for (const Int at : {rows.to, rows.from})
                (at < luma_end_ ? visited.luma : visited.chroma).Add(at, rows.bytes);
        return visited;
    }

    void Apply(Byte* data) const {
        std::vector<Byte> before;
        for (const Move& move : moves_)
            before.insert(before.end(), data + move.from, data + move.from + move.bytes);
        const Byte* next = before.data();
        for (const Move& move : moves_)
            std::copy_n(next, move.bytes, data + move.to), next += move.bytes;
        for (const auto& [to, from, bytes] : exchanged_rows_) {
            const std::vector<Byte> scratch(data + to, data + to + bytes);
            std::memmove(data + to, data + from, scratch.size());
            std::copy(scratch.begin(), scratch.end(), data + from);
        }
    }

  private:
    struct Move {
        Int to, from, bytes;
    };
    struct Area {
        Int plane, stride, left, top, width, bottom;
        Int At(Int x, Int y, Int bytes) const { return plane + y * stride + (left + x) * bytes; }
    };
    // In each row the first `count` pixels with the last ones.
    void Exchange(const Area& a, Int bytes, Int count) {
        for (Int y = a.top; y < a.bottom; ++y)
            for (Int x = 0; x < a.width; ++x) {
                const bool moves = x < count || x >= a.width - count;
                const Int from = moves ? a.width - 1 - x : x;
                moves_.push_back({a.At(x, y, bytes), a.At(from, y, bytes), bytes});
            }
    }
    // One pair after another: rows may overlap.
    void ExchangeRows(const Area& a, Int bytes) {
        for (Int y = a.top, other = a.bottom - 1; y < other && a.width * bytes > 0; ++y, --other)
            exchanged_rows_.push_back({a.At(0, y, bytes), a.At(0, other, bytes), a.width * bytes});
    }
    void ReverseGroups(const Area& a) {
        for (Int y = a.top; y < a.bottom; ++y)
            for (Int x = 0; x < a.width; x += 2) {
                const Int to = a.At(x, y, 2), from = a.At(a.width - 2 - x, y, 2);
                const Int other_luma = to == from ? 0 : 2;
                for (const Int i : {0, 1, 2, 3})
                    moves_.push_back({to + i, from + (i % 2 ? i : i ^ other_luma), 1});
            }
    }

    const bool across_;
    Int luma_end_ = INT64_MAX;
    std::vector<Move> moves_, exchanged_rows_;
};

Rect WholeByModel(const ImageBuffer& image) {
    return {0, 0, image.width, image.height};
}

// What the rectangle alone answers, before anything else of the image is looked at; -1: go on.
int AnswerOfRect(const ImageBuffer& image, const Rect* rect) {
    if (!rect) return -1;
    if (!LiesInByModel(*rect, image)) return PXB_BAD_ARGUMENT;
    return rect->left == rect->right || rect->top == rect->bottom ? PXB_SUCCESS : -1;
}

// Odd coordinates end the call before the companion is visited.
bool HasOddGroups(Flip flip, const ImageBuffer& image, const Rect* rect) {
    return flip == PxbFliphorizontal && image.format == PXB_YUY2 && rect &&
           (rect->left | rect->top | rect->right | rect->bottom) % 2 != 0;
}

int AnswerOfFormat(Flip flip, const ImageBuffer& image, const Rect* rect) {
    if (image.format < PXB_RGB24 || image.format > PXB_YUV422) return PXB_BAD_ARGUMENT;
    if (flip == PxbFlipvertical) return PXB_SUCCESS;
    if (image.format == PXB_YUY2 && !rect && image.width % 2 != 0) return PXB_FAILURE;
    return image.format == PXB_YUV422 ? PXB_UNSUPPORTED : PXB_SUCCESS;
}

std::int32_t MirrorByReference(Flip flip, const ImageBuffer& image, const Rect* rect) {
    if (const int answer = AnswerOfRect(image, rect); answer >= 0) return answer;
    if (!image.data || HasOddGroups(flip, image, rect)) return PXB_BAD_ARGUMENT;
    const int answer = AnswerOfFormat(flip, image, rect);
    if (answer == PXB_SUCCESS)
        Mirror(flip, image, rect ? *rect : WholeByModel(image)).Apply(image.data);
    return image.alpha ? MirrorByReference(flip, *image.alpha, rect) : answer;
}

Visited VisitedByMirror(Flip flip, const ImageBuffer& image, const Rect* rect) {
    if (AnswerOfRect(image, rect) >= 0 || HasOddGroups(flip, image, rect) ||
        AnswerOfFormat(flip, image, rect) != PXB_SUCCESS)
        return {};
    return Mirror(flip, image, rect ? *rect : WholeByModel(image)).WhatIsVisited();
}

}  // namespace

void CheckMirror(Stage& stage, Flip flip, ImageBuffer image, const Rect* rect, bool has_data) {
    ImageBuffer alpha;
    stage.Write(image, VisitedByMirror(flip, image, rect));
    if (image.alpha) {
        alpha = *image.alpha, image.alpha = &alpha;
        stage.Write(alpha, VisitedByMirror(flip, alpha, rect));
    }
    if (!has_data) image.data = nullptr;
    stage.Compare([&](::Processor) { return MirrorByReference(flip, image, rect); },
                  [&] { return CallExport(flip, &image, rect); });
}

void FuzzMirrors(Bytes& bytes) {
    constexpr int kBits[] = {-8, 0, 7, 8, 15, 16, 24, 31, 32, 40, 64};
    const Flip flip = bytes.OneIn(2) ? PxbFliphorizontal : PxbFlipvertical;
    const int format = bytes.OneIn(16) ? AnyFormat(bytes) : bytes.Between(1, PXB_YUV422);
    const Size size = AnySize(bytes);
    ImageBuffer image = AnyRecord(bytes, format, size), alpha = AnyRecord(bytes, PXB_RGB8, size);
    if (format == PXB_YUV422) image.bitsPerPixel = 16, image.stride *= 2;
    if (bytes.OneIn(12) && !Is420(format)) {  // which rule upside down, even where rows overlap
        image.bitsPerPixel = bytes.Pick(kBits);
        const bool overlaps = flip == PxbFlipvertical && bytes.OneIn(2);
        image.stride = overlaps ? bytes.Between(-9, 9) : 8 * (size.width + bytes.Below(3));
    }
    if (bytes.OneIn(4)) alpha = AnyRecord(bytes, bytes.Between(1, PXB_YUV422), size);
    if (bytes.OneIn(4)) image.alpha = &alpha;
    MaybeTall(bytes, image);
    Rect rect = AnyRect(bytes, size);
    std::int32_t* const edges[] = {&rect.left, &rect.top, &rect.right, &rect.bottom};
    for (std::int32_t* edge : edges)
        if (format == PXB_YUY2) *edge &= ~1;
    if (format == PXB_YUY2 && bytes.OneIn(8)) *bytes.Pick(edges) ^= 1;
    if (bytes.OneIn(30)) MakeAbsurd(bytes, image);
    const bool has_data = !bytes.OneIn(30), has_rect = !bytes.OneIn(3);
    Stage stage(bytes);
    CheckMirror(stage, flip, image, has_rect ? &rect : nullptr, has_data);
}

}  // namespace pxb::test
