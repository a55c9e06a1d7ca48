#include "fuzz/stage.h"

#include <cstring>
#include <deque>
#include <optional>
#include <sstream>
#include <tuple>

#include "core/float_guard.h"
#include "support/float_environment.h"
#include "support/noise.h"

namespace pxb::test {
namespace {

constexpr std::size_t kArea = std::size_t{1} << 19;  // for 200 x 200 pixels of 8 bytes
constexpr Int kMargin = 2048;                        // that is compared around an image
constexpr int kContents = 1 << 16;

const Byte* NoiseAt(std::size_t at) {
    static const std::vector<Byte> noise = Noise(3 * kArea + 2 * kContents, 1);
    return &noise[at];
}

auto FieldsOf(const ImageBuffer& i) {
    return std::tie(i.data, i.bitsPerPixel, i.stride, i.width, i.height, i.format, i.alpha);
}

std::int32_t CallIn(const FloatEnvironment& environment,
                    const std::function<std::int32_t()>& call) {
    const FloatEnvironment before = FloatEnvironmentNow();
    SwitchTo(environment);
    const FloatEnvironment switched = FloatEnvironmentNow();
    const std::int32_t result = call();
    const FloatEnvironment after = FloatEnvironmentNow();
    ComputeWithX87();
    SwitchTo(before);
    Expect(after == switched, "the floating-point environment is not kept");
    return result;
}

}  // namespace

// The memory of one image.
class Arena {
  public:
    void Place(ImageBuffer& image, const Visited& visited, Placement placement, int offset) {
        const Span all = visited.All();
        const bool has_both = !visited.luma.IsEmpty() && !visited.chroma.IsEmpty();
        const bool splits = placement == Placement::kSplit && has_both &&
                            visited.chroma.first - visited.luma.end >= Int{GuardedMemory::kPage};
        if (all.IsEmpty())
            image.data = memory_.FirstEnd();
        else if (placement == Placement::kFront)
            image.data = memory_.First() - all.first;
        else if (placement == Placement::kInside)
            image.data = memory_.First() + offset - all.first;
        else
            image.data = memory_.FirstEnd() - (splits ? visited.luma.end : all.end);
        Byte* const first = image.data + (all.IsEmpty() ? 0 : all.first) - kMargin;
        Byte* const end = image.data + (all.IsEmpty() ? 0 : all.end) + kMargin;
        windows_[0] = Cut(first, end, memory_.First());
        windows_[1] = Cut(first, end, memory_.Second());
    }
    void Fill(int content, bool is_plain) {
        SetReadOnly(false);
        for (const Window& window : windows_) {
            const auto at = static_cast<std::size_t>(window.first - memory_.Base());
            if (is_plain)
                std::memset(window.first, content & 255, window.bytes);
            else
                std::memcpy(window.first, NoiseAt(at + content), window.bytes);
        }
    }
    void SetReadOnly(bool read_only) {
        if (read_only != read_only_) memory_.ForbidWriting(read_only);
        read_only_ = read_only;
    }
    void Remember() {
        for (int i = 0; i < 2; ++i)
            wanted_[i].assign(windows_[i].first, windows_[i].first + windows_[i].bytes);
    }
    // The first byte that is not as remembered.
    const Byte* Difference(Byte* wanted) const {
        for (int i = 0; i < 2; ++i) {
            const Byte *const first = windows_[i].first, *const end = first + windows_[i].bytes;
            if (first == end || std::memcmp(first, wanted_[i].data(), end - first) == 0) continue;
            const auto [got, want] = std::mismatch(first, end, wanted_[i].begin());
            *wanted = *want;
            return got;
        }
        return nullptr;
    }

  private:
    struct Window {
        Byte* first;
        std::size_t bytes;
    };
    static Window Cut(Byte* first, Byte* end, Byte* area) {
        first = std::clamp(first, area, area + kArea);
        return {first, static_cast<std::size_t>(std::clamp(end, first, area + kArea) - first)};
    }

    GuardedMemory memory_{kArea};
    Window windows_[2] = {};
    std::vector<Byte> wanted_[2];
    bool read_only_ = false;
};

Stage::Stage(Placement placement, int content) : placement_(placement), content_(content) {}

Stage::Stage(Bytes& bytes)
    : placement_(static_cast<Placement>(bytes.Below(4))),
      offset_(bytes.Below(64)),
      environment_(bytes.OneIn(4) ? bytes.Below(std::size(kFloatEnvironments)) : 0),
      content_(bytes.Below(kContents)),
      is_plain_(bytes.OneIn(16)) {}

void Stage::Place(ImageBuffer& image, const Visited& visited, bool written) {
    static std::deque<Arena> arenas;
    if (roles_.size() == arenas.size()) arenas.emplace_back();
    Arena& arena = arenas[roles_.size()];
    const auto number = static_cast<int>(roles_.size());
    arena.Place(image, visited, placement_, offset_ + 13 * number);
    arena.Fill(content_ + number * 7919, is_plain_ && !written);
    arena.SetReadOnly(!written);
    roles_.push_back({&image, image, &arena, written});
}

void Stage::Restore() const {
    for (std::size_t i = 0; i < roles_.size(); ++i)
        if (roles_[i].written) roles_[i].arena->Fill(content_ + static_cast<int>(i) * 7919, false);
}

void Stage::Compare(const std::function<std::int32_t(::Processor)>& reference,
                    const std::function<std::int32_t()>& call, bool by_processor) {
    static const std::vector<Variant> variants = RunnableVariants();
    std::optional<::Processor> computed;
    std::int32_t wanted = 0;
    for (Role& role : roles_) role.record = *role.image;  // as the caller completed it
    for (const Variant& variant : variants) {
        if (!computed || (by_processor && *computed != variant.arithmetic)) {
            Restore();
            computed = variant.arithmetic;
            const FloatGuard guard;
            wanted = reference(variant.arithmetic);
            for (const Role& role : roles_)
                if (role.written) role.arena->Remember();
        }
        Restore();
        const ForcedProcessor forced(variant.words);
        Check(variant, CallIn(kFloatEnvironments[environment_], call), wanted);
    }
}

void Stage::Check(const Variant& variant, std::int32_t result, std::int32_t wanted) const {
    const auto expect = [&](bool holds, const auto&... what) {
        if (holds) return;
        std::ostringstream text;
        (text << ... << what);
        throw Finding(text.str() + Describe(variant));
    };
    expect(result == wanted, "result ", result, ", expected ", wanted);
    for (const Role& role : roles_) {
        expect(FieldsOf(*role.image) == FieldsOf(role.record), "changed record");
        if (!role.written) continue;
        Byte want = 0;
        const Byte* const got = role.arena->Difference(&want);
        if (!got) continue;
        expect(false, "byte ", got - role.image->data, " after the data is ", int{*got},
               ", expected ", int{want});
    }
}

std::string Stage::Describe(const Variant& variant) const {
    std::ostringstream text;
    text << "; " << variant.name;
    for (const Role& role : roles_) {
        const ImageBuffer& image = role.record;
        const bool known = image.format > 0 && image.format <= kFormats;
        text << (role.written ? "; writes " : "; reads ")
             << (known ? kFormatNames[image.format] : "unknown") << " " << image.width << " x "
             << image.height << " of " << image.bitsPerPixel << " bits, stride " << image.stride
             << (image.data ? "" : ", no data");
    }
    return text.str();
}

// ---- Arguments ----

int AnyExtent(Bytes& bytes) {
    constexpr int kEdges[] = {0, 1, 2, 3, 15, 16, 17, 31, 32, 33, 48, 63, 64, 65, 128, 129, 200};
    switch (bytes.Below(4)) {
        case 0:
            return bytes.Below(36);
        case 1:
            return bytes.Below(80);
        case 2:
            return bytes.Below(201);
        default:
            return bytes.Pick(kEdges);
    }
}

Size AnySize(Bytes& bytes) {
    const Size size = {AnyExtent(bytes), bytes.OneIn(12) ? AnyExtent(bytes) : bytes.Below(9)};
    return bytes.OneIn(10) ? Size{size.height, size.width} : size;
}

int AnyFormat(Bytes& bytes) {
    constexpr int kUnknown[] = {0, 10, -1, INT32_MIN, INT32_MAX};
    return bytes.OneIn(16) ? bytes.Pick(kUnknown) : bytes.Between(1, kFormats);
}

Rect AnyRect(Bytes& bytes, Size size) {
    Rect r = {bytes.Below(size.width + 1), bytes.Below(size.height + 1), size.width, size.height};
    if (bytes.OneIn(2)) r.left = std::min(r.left, 7), r.top = std::min(r.top, 3);
    if (bytes.OneIn(2)) r.right -= bytes.Below(size.width - r.left + 1);
    if (bytes.OneIn(2)) r.bottom -= bytes.Below(size.height - r.top + 1);
    if (!bytes.OneIn(12)) return r;
    const int outside[] = {-1, size.width + 1, size.height + 1, INT32_MIN, INT32_MAX};
    std::int32_t* const edges[] = {&r.left, &r.top, &r.right, &r.bottom};
    *bytes.Pick(edges) = bytes.Pick(outside);
    if (bytes.OneIn(2)) *bytes.Pick(edges) = bytes.Pick(outside);
    return r;
}

ImageBuffer AnyRecord(Bytes& bytes, int format, Size size, bool may_turn) {
    const int padding = bytes.OneIn(2) ? 0 : bytes.Below(24);
    return Describe(format, size, padding, may_turn && !Is420(format) && bytes.OneIn(5));
}

void MaybeTall(Bytes& bytes, ImageBuffer& image) {
    if (!Is420(image.format) || image.stride < 8 || !bytes.OneIn(4)) return;
    image.height += static_cast<std::int32_t>(GuardedMemory::kPage) / image.stride + 2;
}

void MakeAbsurd(Bytes& bytes, ImageBuffer& image) {
    const int negative[] = {-1, -image.width - 1, INT32_MIN};
    if (Is420(image.format) && image.stride > 0 && bytes.OneIn(3)) {
        image.stride = -image.stride;
        return;
    }
    (bytes.OneIn(2) ? image.width : image.height) = bytes.Pick(negative);
}

}  // namespace pxb::test
