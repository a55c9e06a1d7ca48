// Painting into an I420 picture in studio range: boxes, circles, text. Everything is clipped to the
// picture. A chroma sample serves 2 x 2 pixels; the last of them that is painted sets it.
#pragma once
#include <string_view>

#include "picture.h"

namespace pxb::tool {

struct Yuv {
    double y, u, v;
};

inline constexpr Yuv kBlack = {16, 128, 128}, kWhite = {235, 128, 128}, kGrey = {104, 128, 128};

// Red, green and blue from 0 to 1, by ITU-R BT.601.
Yuv FromRgb(double red, double green, double blue);

// Pixels; right and bottom are exclusive.
struct Box {
    int left, top, right, bottom;

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
};

class Canvas {
  public:
    explicit Canvas(Picture& i420);

    Size size() const { return picture_.size(); }

    // `opacity`: 0 keeps what is there, 1 replaces it.
    void Pixel(int x, int y, const Yuv& color, double opacity = 1);
    void Fill(const Box& box, const Yuv& color);

    // Columns of color(x), x from 0 at the box's left to 1 at its right.
    template <class Shader>
    void Shade(const Box& box, Shader color) {
        for (int x = box.left; x < box.right; ++x)
            Fill({x, box.top, x + 1, box.bottom}, color(Fraction(x, box.left, box.right)));
    }

    // A circle's line, and the part of a disc that shader(dx, dy) colors, both with smooth edges;
    // dx, dy: pixels from the center.
    void Ring(double center_x, double center_y, double radius, double line, const Yuv& color);
    template <class Shader>
    void Disc(double center_x, double center_y, double radius, Shader color) {
        const int reach = static_cast<int>(radius) + 2;
        const int cx = static_cast<int>(center_x), cy = static_cast<int>(center_y);
        for (int y = cy - reach; y <= cy + reach; ++y)
            for (int x = cx - reach; x <= cx + reach; ++x) {
                const double dx = x + 0.5 - center_x, dy = y + 0.5 - center_y;
                Pixel(x, y, color(dx, dy), radius + 0.5 - Distance(dx, dy));
            }
    }

    // Capitals, digits and a few signs, `scale` pixels a dot; other letters leave a gap.
    void Text(int left, int top, int scale, std::string_view text, const Yuv& color);

  private:
    static double Distance(double dx, double dy);
    static double Fraction(int at, int begin, int end) {
        return end - begin > 1 ? static_cast<double>(at - begin) / (end - begin - 1) : 0;
    }

    Picture& picture_;
    std::vector<Plane> planes_;
};

}  // namespace pxb::tool
