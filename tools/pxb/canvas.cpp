// The painter of the test card.
#include "canvas.h"

#include <algorithm>
#include <cmath>

#include "font.h"

namespace pxb::tool {
namespace {

void Blend(std::uint8_t* sample, double value, double opacity) {
    *sample = static_cast<std::uint8_t>(std::lround(*sample + (value - *sample) * opacity));
}

}  // namespace

Yuv FromRgb(double red, double green, double blue) {
    const double luma = 0.299 * red + 0.587 * green + 0.114 * blue;
    return {16 + 219 * luma, 128 + 112 * (blue - luma) / (1 - 0.114),
            128 + 112 * (red - luma) / (1 - 0.299)};
}

Canvas::Canvas(Picture& i420) : picture_(i420), planes_(i420.Planes()) {}

void Canvas::Pixel(int x, int y, const Yuv& color, double opacity) {
    if (x < 0 || y < 0 || x >= size().width || y >= size().height || opacity <= 0) return;
    opacity = std::min(opacity, 1.0);
    Blend(picture_.Row(planes_[0], y) + x, color.y, opacity);
    Blend(picture_.Row(planes_[1], y / 2) + x / 2, color.u, opacity);
    Blend(picture_.Row(planes_[2], y / 2) + x / 2, color.v, opacity);
}

void Canvas::Fill(const Box& box, const Yuv& color) {
    for (int y = std::max(box.top, 0); y < std::min(box.bottom, size().height); ++y)
        for (int x = std::max(box.left, 0); x < std::min(box.right, size().width); ++x)
            Pixel(x, y, color);
}

double Canvas::Distance(double dx, double dy) {
    return std::sqrt(dx * dx + dy * dy);
}

void Canvas::Ring(double center_x, double center_y, double radius, double line, const Yuv& color) {
    const int reach = static_cast<int>(radius + line) + 2;
    const int cx = static_cast<int>(center_x), cy = static_cast<int>(center_y);
    for (int y = cy - reach; y <= cy + reach; ++y)
        for (int x = cx - reach; x <= cx + reach; ++x) {
            const double off = Distance(x + 0.5 - center_x, y + 0.5 - center_y) - radius;
            Pixel(x, y, color, line / 2 + 0.5 - std::abs(off));
        }
}

void Canvas::Text(int left, int top, int scale, std::string_view text, const Yuv& color) {
    for (const char letter : text) {
        const std::string_view dots = GlyphOf(letter);
        for (int i = 0; i < static_cast<int>(dots.size()); ++i) {
            if (dots[i] != '#') continue;
            const int x = left + i % kGlyphWidth * scale, y = top + i / kGlyphWidth * scale;
            Fill({x, y, x + scale, y + scale}, color);
        }
        left += kGlyphAdvance * scale;
    }
}

}  // namespace pxb::tool
