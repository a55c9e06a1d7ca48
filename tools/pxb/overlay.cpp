#include "overlay.h"

#include <algorithm>
#include <array>

#include "convert.h"
#include "error.h"
#include "frame_source.h"

namespace pxb::tool {
namespace {

constexpr std::array kBlendable = {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420};

Picture ReadFirst(const std::string& path, std::int64_t max_pixels) {
    InputOptions options{path, {}, {}};
    options.layout.max_pixels = max_pixels;
    FrameSource source(options);
    std::optional<Frame> first = source.Next();
    if (!first) throw Error(source.name(), "frame", "0", "the file has 0 frames");
    return std::move(first->picture);
}

Picture MaskOf(const OverlayOptions& options, const Picture& overlay) {
    if (options.alpha_path.empty()) {
        if (overlay.format() == PXB_RGB32) return GetChannel(options.path, overlay, 1);
        throw Error(options.path, "format", FormatName(overlay.format()),
                    "has no alpha; give a grey picture with --alpha");
    }
    Picture mask = ReadFirst(options.alpha_path, options.max_pixels);
    if (mask.format() != PXB_RGB8)
        throw Error(options.alpha_path, "format", FormatName(mask.format()),
                    "should be a grey picture; `pxb channel` makes one");
    const Size size = mask.size(), wanted = overlay.size();
    if (size.width != wanted.width || size.height != wanted.height)
        throw Error(options.alpha_path, "size", ToString(size),
                    "should be that of the overlay, " + ToString(wanted));
    return mask;
}

}  // namespace

Overlay::Overlay(const OverlayOptions& options)
    : options_(options),
      original_(ReadFirst(options.path, options.max_pixels)),
      mask_(MaskOf(options, original_)),
      part_(options.part.value_or(Rect{0, 0, original_.size().width, original_.size().height})) {
    CheckRect(options.path, "--from-rect", part_, original_.size());
}

void Overlay::CheckPlace(const std::string& file, const Picture& picture) const {
    const auto refuse = [&](const std::string& reason) {
        throw Error(file, "--at", ToString(options_.at), reason);
    };
    const Size part = {part_.right - part_.left, part_.bottom - part_.top}, size = picture.size();
    if (options_.at.x > size.width - part.width || options_.at.y > size.height - part.height)
        refuse(ToString(part) + " pixels from there on do not fit into " + ToString(size));
    if (picture.format() == PXB_YUY2 && (options_.at.x - part_.left) % 2 != 0)
        refuse("U and V would change places; X should be " +
               std::string(part_.left % 2 ? "odd" : "even") + " for YUY2");
}

const Picture& Overlay::ConvertedTo(PixelFormat format) {
    const std::lock_guard lock(converting_);
    if (!converted_) converted_.emplace(Convert(options_.path, original_, format));
    return *converted_;
}

void Overlay::LayOver(const std::string& file, Picture& picture) {
    const PixelFormat format = picture.format();
    if (std::ranges::find(kBlendable, format) == kBlendable.end())
        throw Error(file, "format", FormatName(format),
                    "the library blends RGB24, RGB32, YV12, YUY2 and I420");
    CheckPlace(file, picture);
    // RGB32 over RGB32 needs no mask: the fourth bytes of the overlay are its alpha.
    const bool has_own = format == PXB_RGB32 && options_.alpha_path.empty();
    Blend(file, picture, ConvertedTo(format), has_own ? nullptr : &mask_, options_.at, part_);
}

}  // namespace pxb::tool
