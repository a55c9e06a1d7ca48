#include "manifest/groups.h"

#include <algorithm>

#include "convert/format_pairs.h"

namespace pxb::test {
namespace {

struct Sizes {
    const char* name;
    int least_width, most_width, rows, slack;  // slack: by which two images may differ
};
constexpr Sizes kSmall = {"small", 1, 70, 9, 4}, kWide = {"wide", 71, 700, 4, 0};

Size DrawSize(Scene& scene, const Sizes& sizes) {
    return scene.DrawSize(sizes.least_width, sizes.most_width, sizes.rows);
}

const Rect* Pointer(const std::optional<Rect>& rect) {
    return rect ? &*rect : nullptr;
}

class Groups : public std::vector<Group> {
  public:
    using Call = std::function<void(Scene&)>;

    void Add(std::initializer_list<std::string> path, const Call& call,
             Arithmetic arithmetic = Arithmetic::kOne) {
        std::string name;
        for (const std::string& part : path) name += name.empty() ? part : "/" + part;
        push_back({name, call, arithmetic});
    }
};

// ---- Buffers, fills and accessors ----

// Sizes that succeed, companions' too, are small, so that every platform has the memory.
void New(Scene& scene, int format) {
    constexpr int kExtremes[] = {-5, 0, INT32_MIN, INT32_MAX};
    const auto extent = [&] {
        return scene.OneIn(4) ? kExtremes[scene.Draw(0, 3, "extreme")]
                              : scene.Draw(0, 40, "extent");
    };
    const int width = extent(), height = extent();
    ImageBuffer image = {nullptr, 0, 0, width, height, format, nullptr};
    scene.Leave(PxbNew(&image, scene.Draw(-1, 1, "with alpha")));
    for (const ImageBuffer* record : {&image, image.alpha}) {
        if (!record) continue;
        scene.Leave(*record);
        scene.Leave(record->data != nullptr);
        const bool painted =
            record->data && record->width > 0 && record->height > 0 && record->format <= PXB_YUV422;
        const int row_bytes = painted ? record->width * record->bitsPerPixel / 8 : 0;
        for (int i = 0; i < row_bytes; ++i) scene.Leave(record->data[i]);
    }
    scene.Leave(PxbDelete(&image));
    scene.Leave(image);
    scene.Leave(image.data || image.alpha);
}

void Fill(Scene& scene, int format, const Sizes& sizes) {
    ImageBuffer* const image = scene.Add({format, DrawSize(scene, sizes)});
    scene.Leave(PxbFillColor(image, scene.Draw(INT32_MIN, INT32_MAX, "color")));
}

void FillManyColors(Scene& scene) {
    Byte planes[6];
    ImageBuffer image = {planes, 12, 2, 2, 2, PXB_I420, nullptr};
    for (int i = 0; i < 250; ++i) {
        PxbFillColor(&image, scene.Draw(0, 0xFFFFFF));
        for (const Byte byte : planes) scene.Leave(byte);
    }
}

template <class Accessor>
void Address(Scene& scene, const Accessor& accessor) {
    static Byte first;
    const int stride = scene.Draw(-900, 900, "stride"), height = scene.Draw(-200, 200, "height");
    const ImageBuffer image = {&first, 8, stride, 100, height, PXB_RGB8, nullptr};
    const int x = scene.Draw(-300, 300, "x"), y = scene.Draw(-300, 300, "y");
    const auto leave = [&](const Byte* at) { scene.Leave(at ? at - image.data : 0); };
    const auto found = accessor(&image, x, y);
    if constexpr (std::is_pointer_v<decltype(found)>)
        leave(found);
    else
        leave(found.y), leave(found.u), leave(found.v);
}

void AddBuffers(Groups& groups) {
    for (int format = 0; format <= kFormats; ++format)
        groups.Add({"new", kFormatNames[format]}, [=](Scene& scene) { New(scene, format); });
    for (int format = 1; format <= kFormats; ++format)
        for (const Sizes& sizes : {kSmall, kWide})
            groups.Add({"fill", kFormatNames[format], sizes.name},
                       [=](Scene& scene) { Fill(scene, format, sizes); });
    groups.Add({"fill", "colors"}, FillManyColors);

    const auto add = [&](const char* format, auto* accessor) {
        groups.Add({"pixels", format}, [=](Scene& scene) { Address(scene, accessor); });
    };
    add("RGB24", PxbPixelsRGB24), add("RGB32", PxbPixelsRGB32), add("RGB8", PxbPixelsRGB8);
    add("YV12", PxbPixelsYV12), add("I420", PxbPixelsI420), add("YUY2", PxbPixelsYUY2);
    add("YUV422", PxbPixelsYUV422);
}

// ---- Conversion ----

void Convert(Scene& scene, int from, int to, const Sizes& sizes) {
    const Size size = DrawSize(scene, sizes);
    const int slack = scene.OneIn(2) ? sizes.slack : 0;
    const int less = from == PXB_RGB8 ? 0 : -slack;  // grey images are walked by their size
    const Size dst_size = {std::max(1, size.width + scene.Draw(less, slack)),
                           std::max(1, size.height + scene.Draw(less, slack))};
    const bool may_turn = from != PXB_YUV422 && to != PXB_YUV422;
    ImageBuffer* const dst = scene.Add({to, dst_size, 0, 0, may_turn, size});
    const ImageBuffer* const src = scene.Add({from, size, 0, 0, may_turn, dst_size});
    if (from == PXB_RGB32 && scene.OneIn(3)) dst->alpha = scene.Add({PXB_RGB8, size});
    scene.Leave(PxbColorSpaceConv(dst, src));
}

Arithmetic ArithmeticOf(int from, int to) {
    if (kResults[from - 1][to - 1] || !IsRgb(to) || IsRgb(from) || from == PXB_RGB8)
        return Arithmetic::kOne;
    if (from == PXB_YUY2 && to == PXB_RGB24) return Arithmetic::kOne;  // has both in each row
    const bool has_mmx = from == PXB_YV12 || from == PXB_I420 || from == PXB_YUY2;
    return has_mmx ? Arithmetic::kSixBitsFromMmx : Arithmetic::kSixBitsFromSse2;
}

void GetChannel(Scene& scene, int format, const Sizes& sizes) {
    const int channel = scene.Draw(0, 6, "channel");
    const Size size = DrawSize(scene, sizes);
    const int more = scene.OneIn(2) ? 0 : scene.Draw(0, sizes.slack);
    const Size dst_size = {(size.width + 1) / 2 * 2 + more, (size.height + 1) / 2 * 2};
    ImageBuffer* const dst = scene.Add({PXB_RGB8, dst_size});
    const ImageBuffer* const src = scene.Add({format, size});
    scene.Leave(PxbChannelGet(dst, src, channel));
}

void AddConversions(Groups& groups) {
    for (int from = 1; from <= kFormats; ++from)
        for (int to = 1; to <= kFormats; ++to)
            for (const Sizes& sizes : {kSmall, kWide}) {
                if (kResults[from - 1][to - 1] && sizes.slack == 0) continue;
                groups.Add(
                    {"convert", kFormatNames[from], kFormatNames[to], sizes.name},
                    [=](Scene& s) { Convert(s, from, to, sizes); }, ArithmeticOf(from, to));
            }
    for (int format = 1; format <= kFormats; ++format)
        for (const Sizes& sizes : {kSmall, kWide})
            groups.Add({"channel", kFormatNames[format], sizes.name},
                       [=](Scene& scene) { GetChannel(scene, format, sizes); });
}

// ---- Scaling, turns, mirrors ----

// The records' bits say how many bytes a pixel has, whatever the format.
struct Layout {
    const char* name;
    int format, dst_bits, src_bits;
};
constexpr Layout kLayouts[] = {
    {"RGB24", PXB_RGB24, 24, 24},    {"RGB32", PXB_RGB32, 32, 32}, {"24_to_32", PXB_RGB24, 32, 24},
    {"32_to_24", PXB_RGB32, 24, 32}, {"RGB8", PXB_RGB8, 8, 8},     {"YV12", PXB_YV12, 12, 12},
    {"I420", PXB_I420, 12, 12},      {"YUY2", PXB_YUY2, 16, 16},   {"YUV422", PXB_YUV422, 16, 16},
    {"NV12", PXB_NV12, 12, 12},
};

// An extent to scale from: any, equal, or a whole number of times as large or small.
int Related(Scene& scene, int extent) {
    const int any = scene.Draw(1, 70), factor = scene.Draw(2, 4);
    const int choices[] = {any, extent, extent * factor, std::max(1, extent / factor)};
    return choices[scene.Draw(0, 3)];
}

void Resize(Scene& scene, const Layout& layout, int mode, const Sizes& sizes, bool by_rects) {
    constexpr int kOtherModes[] = {7, -1, INT32_MIN};
    if (mode == 7) mode = kOtherModes[scene.Draw(0, 2, "mode")];
    const Size to = {scene.Draw(sizes.least_width, sizes.most_width), scene.Draw(1, sizes.rows)};
    Size from = {Related(scene, to.width), Related(scene, to.height)};
    if (sizes.slack) {  // of pairs of pixels, and odd ones beside them
        const int factor = 2 * scene.Draw(1, 2);
        from = {to.width / 2 * 2 * factor + scene.Draw(0, sizes.slack), to.height * factor};
    }
    ImageBuffer* const dst = scene.Add({layout.format, to, layout.dst_bits});
    ImageBuffer* const src = scene.Add({layout.format, from, layout.src_bits});
    if (scene.OneIn(6)) {
        dst->alpha = scene.Add({PXB_RGB8, to});
        src->alpha = scene.Add({PXB_RGB8, from});
    }
    const std::int32_t* const wanted = layout.format == PXB_YUY2 && !dst->alpha ? nullptr : &mode;
    if (!by_rects) return scene.Leave(PxbResize(dst, src, wanted));
    const std::optional<Rect> dst_rect = scene.DrawRect(to), src_rect = scene.DrawRect(from);
    scene.Leave(PxbResizeEx(dst, src, wanted, Pointer(dst_rect), Pointer(src_rect)));
}

void AddScaling(Groups& groups) {
    constexpr Sizes kAny = {"any", 1, 70, 24, 0}, kLong = {"wide", 71, 400, 24, 0},
                    kEven = {"even", 2, 200, 12, 1};
    for (const Layout& layout : kLayouts)
        for (int mode = 0; mode < 8; ++mode) {
            const bool reads_mode = layout.format != PXB_YUY2 && layout.format < PXB_YUV422;
            if (!reads_mode && mode != 1) continue;
            const auto add = [&](const char* function, const Sizes& sizes, bool by_rects) {
                groups.Add({function, layout.name, std::to_string(mode), sizes.name},
                           [=](Scene& s) { Resize(s, layout, mode, sizes, by_rects); });
            };
            add("resize", kAny, false);
            add("resize", kLong, false);
            if (mode < 3) add("resize", kEven, false);
            add("resizeEx", kAny, true);
        }
}

// Exact turns copy edges by the size of the destination, which must not exceed the source's.
Size WithinSource(Size dst, int angle, int across, int down) {
    if (angle == 180) return {std::min(dst.width, across), std::min(dst.height, down)};
    if (angle == 90 || angle == 270)
        return {std::min(dst.width, down), std::min(dst.height, across)};
    return dst;
}

void Rotate(Scene& scene, const Layout& layout, int least_angle, int most_angle) {
    const auto [_, format, dst_bits, src_bits] = layout;
    const bool planar = Is420(format);
    const int angle = scene.Draw(least_angle, most_angle, "angle");
    Size from = scene.DrawSize(1, 60, 40), to = scene.DrawSize(1, 70, 50);
    if (planar) {
        from = {(from.width + 1) / 2 * 2, (from.height + 1) / 2 * 2};
        to = angle % 180 ? Size{from.height, from.width} : from;
    }
    const int across = std::min(from.width, from.width * src_bits / dst_bits);
    to = WithinSource(to, angle, across, from.height);
    // 180 steps through the destination by the source's stride.
    const int row = std::max(from.width * src_bits, to.width * dst_bits) / 8 + scene.Draw(0, 5);
    const int common = angle != 180 ? 0 : scene.OneIn(4) ? -row : row;
    const auto add = [&](int kind, Size size, int bits) {
        return scene.Add({kind, size, bits, planar ? size.width : common});
    };
    ImageBuffer *const dst = add(format, to, dst_bits), *const src = add(format, from, src_bits);
    if (scene.OneIn(6)) {
        dst->alpha = add(PXB_RGB8, to, 8);
        src->alpha = add(PXB_RGB8, from, 8);
    }
    scene.Leave(PxbRotate(dst, src, angle));
}

using Flip = decltype(&PxbFlipvertical);

void Mirror(Scene& scene, Flip flip, int format, const Sizes& sizes) {
    const Size size = DrawSize(scene, sizes);
    ImageBuffer* const image = scene.Add({format, size});
    if (scene.OneIn(4)) image->alpha = scene.Add({scene.Draw(PXB_RGB24, PXB_RGB8), size});
    const std::optional<Rect> rect = scene.DrawRect(size);
    scene.Leave(flip(image, Pointer(rect)));
}

void AddTurnsAndMirrors(Groups& groups) {
    constexpr struct {
        const char* name;
        int least, most;
    } kAngles[] = {{"90", 90, 90}, {"180", 180, 180},   {"270", 270, 270},
                   {"0", 0, 0},    {"some", -720, 720}, {"all", INT32_MIN, INT32_MAX}};
    for (const Layout& layout : kLayouts)
        for (const auto& angles : kAngles)
            groups.Add({"rotate", layout.name, angles.name},
                       [=](Scene& s) { Rotate(s, layout, angles.least, angles.most); });
    for (int format = 1; format <= kFormats; ++format)
        for (const Sizes& sizes : {kSmall, kWide}) {
            const auto add = [&](const char* name, Flip flip) {
                groups.Add({name, kFormatNames[format], sizes.name},
                           [=](Scene& scene) { Mirror(scene, flip, format, sizes); });
            };
            add("mirror", PxbFliphorizontal);
            add("turn_over", PxbFlipvertical);
        }
}

// ---- Blending ----

void Blend(Scene& scene, int format, const Sizes& sizes, bool has_plane) {
    const Size from = DrawSize(scene, sizes);
    const std::optional<Rect> src_rect = scene.DrawRect(from);
    const Rect area = src_rect.value_or(Rect{0, 0, from.width, from.height});
    const int left = scene.Draw(0, 5, "left"), top = scene.Draw(0, 5, "top");
    Rect dst_rect = {left, top, left + area.right - area.left, top + area.bottom - area.top};
    const Size to = {dst_rect.right + scene.Draw(0, 3), dst_rect.bottom + scene.Draw(0, 3)};
    dst_rect.right += scene.Draw(0, 16, "too much") / 16;
    ImageBuffer *const dst = scene.Add({format, to}), *const src = scene.Add({format, from}),
                       *const alpha = scene.Add({PXB_RGB8, from});
    if (!has_plane) src->alpha = alpha;
    const ImageBuffer* const plane = has_plane ? alpha : nullptr;
    scene.Leave(PxbAlphaBlend(dst, src, plane, &dst_rect, Pointer(src_rect)));
}

void AddBlending(Groups& groups) {
    for (int format = 1; format <= kFormats; ++format)
        for (const Sizes& sizes : {kSmall, kWide})
            for (const bool has_plane : {true, false})
                groups.Add(
                    {"blend", kFormatNames[format], sizes.name, has_plane ? "plane" : "companion"},
                    [=](Scene& s) { Blend(s, format, sizes, has_plane); });
}

}  // namespace

std::vector<Group> AllGroups() {
    Groups groups;
    AddBuffers(groups);
    AddConversions(groups);
    AddScaling(groups);
    AddTurnsAndMirrors(groups);
    AddBlending(groups);
    return groups;
}

}  // namespace pxb::test
