// The test card, laid out in square cells, of which a 4:3 frame has 16 x 12:
//
//     frame edge     castellations; a crosshatch on grey fills what the panels leave free
//     corners        saturated colors, each round its complement
//     top            color bars at 100 % and 75 %
//     center         a zone plate that reaches half the sampling rate at its rim
//     beside it      left: gratings and checkerboards of 1 to 4 pixels; right: text
//     bottom         grey steps, a grey ramp, a hue sweep and ramps of the primaries
//
// Panels hang on the frame's edges or on its center, so that wide and tall frames stay in balance.
#include "testcard.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "canvas.h"
#include "font.h"

namespace pxb::tool {
namespace {

constexpr int kColumns = 16, kRows = 12;
constexpr int kMinCell = 4;        // pixels; smaller frames get bars and a ramp alone
constexpr int kFineLineCell = 12;  // from here on there is room for a crosshatch and text

// The eight colors of the bars, by falling luma.
constexpr double kBars[8][3] = {{1, 1, 1}, {1, 1, 0}, {0, 1, 1}, {0, 1, 0},
                                {1, 0, 1}, {1, 0, 0}, {0, 0, 1}, {0, 0, 0}};

int Even(double n) {
    return static_cast<int>(n / 2) * 2;
}

void Bars(Canvas& canvas, const Box& box, double level) {
    for (int i = 0; i < 8; ++i)
        canvas.Fill({box.left + Even(box.Width() * i / 8.0), box.top,
                     i == 7 ? box.right : box.left + Even(box.Width() * (i + 1) / 8.0), box.bottom},
                    FromRgb(level * kBars[i][0], level * kBars[i][1], level * kBars[i][2]));
}

Box Common(const Box& a, const Box& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

Yuv Grey(double level) {
    return {16 + 219 * level, 128, 128};
}

// Once round the color circle, 0 to 1, at full saturation.
Yuv Hue(double turn) {
    const auto channel = [turn](double center) {
        const double away = std::abs(std::remainder(turn - center, 1.0)) * 6;
        return std::clamp(2 - away, 0.0, 1.0);
    };
    return FromRgb(channel(0), channel(1 / 3.0), channel(2 / 3.0));
}

class TestCard {
  public:
    TestCard(Picture& picture, int number, int count)
        : canvas_(picture), number_(number), turn_(static_cast<double>(number) / count) {
        const auto [width, height] = picture.size();
        frame_ = {0, 0, width, height};
        cell_ = Even(std::min(width / kColumns, height / kRows));
        right_ = Even(width);
        bottom_ = Even(height);
        center_x_ = Even(width / 2.0);
        center_y_ = Even(height / 2.0);
    }

    void Paint() {
        if (cell_ < kMinCell) return PaintSmall();
        canvas_.Fill(frame_, kGrey);
        if (HasFineLines()) Crosshatch();
        canvas_.Ring(center_x_, center_y_, std::min(center_x_, center_y_) - Cells(0.5), Line(),
                     kWhite);
        Castellations();
        Corners();
        TopBars();
        ZonePlate();
        const Box left = {center_x_ - Cells(7), center_y_ - Cells(2), center_x_ - Cells(3.25),
                          center_y_ + Cells(2)};
        const Box right = {center_x_ + Cells(3.25), left.top, center_x_ + Cells(7), left.bottom};
        Gratings(left);
        HasFineLines() ? TextPanel(right) : Gratings(right);
        Ramps();
    }

  private:
    int Cells(double n) const { return Even(n * cell_); }
    bool HasFineLines() const { return cell_ >= kFineLineCell; }
    int Line() const { return std::max(cell_ / 48 * 2, 2); }

    void PaintSmall() {
        const int split = frame_.bottom - frame_.bottom / 3;
        Bars(canvas_, {0, 0, frame_.right, split}, 1);
        canvas_.Shade({0, split, frame_.right, frame_.bottom}, Grey);
    }

    void Crosshatch() {
        for (int x = center_x_ % cell_; x < frame_.right; x += cell_)
            canvas_.Fill({x, 0, x + Line(), frame_.bottom}, kWhite);
        for (int y = center_y_ % cell_; y < frame_.bottom; y += cell_)
            canvas_.Fill({0, y, frame_.right, y + Line()}, kWhite);
    }

    // The rim of a checkerboard whose squares meet at the center.
    void Castellations() {
        const int depth = Cells(0.5), width = frame_.right, height = frame_.bottom;
        const Box rims[] = {{0, 0, width, depth},
                            {0, height - depth, width, height},
                            {0, 0, depth, height},
                            {width - depth, 0, width, height}};
        for (int y = center_y_ % cell_ - cell_; y < frame_.bottom; y += cell_)
            for (int x = center_x_ % cell_ - cell_; x < frame_.right; x += cell_) {
                const int squares = (x - center_x_) / cell_ + (y - center_y_) / cell_;
                const Yuv& color = squares % 2 == 0 ? kBlack : kWhite;
                for (const Box& rim : rims)
                    canvas_.Fill(Common({x, y, x + cell_, y + cell_}, rim), color);
            }
    }

    void Corners() {
        const int left = Cells(1), right = right_ - Cells(3), top = Cells(1),
                  bottom = bottom_ - Cells(3);
        Corner(left, top, 1, 0, 0);
        Corner(right, top, 0, 1, 0);
        Corner(left, bottom, 0, 0, 1);
        Corner(right, bottom, 1, 0, 1);
    }

    void Corner(int left, int top, double red, double green, double blue) {
        const int side = Cells(2), inset = Cells(0.5);
        canvas_.Fill({left, top, left + side, top + side}, FromRgb(red, green, blue));
        canvas_.Fill({left + inset, top + inset, left + side - inset, top + side - inset},
                     FromRgb(1 - red, 1 - green, 1 - blue));
    }

    Box Between(int top, int bottom) const {
        return {Cells(3.5), top, right_ - Cells(3.5), bottom};
    }

    void TopBars() {
        Bars(canvas_, Between(Cells(1), Cells(2)), 1);
        Bars(canvas_, Between(Cells(2), Cells(3)), 0.75);
    }

    // Rings that narrow outward: the phase is pi r^2 / 2R, so that a step of one pixel at the rim
    // is half a period.
    void ZonePlate() {
        const double radius = Cells(2.5);
        canvas_.Disc(center_x_, center_y_, radius, [&](double dx, double dy) {
            const double turns = (dx * dx + dy * dy) / (4 * radius) - turn_;
            return Grey(0.5 + 0.5 * std::cos(2 * std::numbers::pi * turns));
        });
        canvas_.Ring(center_x_, center_y_, radius, Line(), kWhite);
    }

    // Stripes of 1 to 4 pixels: upright, level, and both, which makes checkerboards.
    void Gratings(const Box& box) {
        const int width = box.Width() / 3, height = box.Height() / 4;
        for (int part = 0; part < 12; ++part) {
            const int across = part % 3, thickness = std::min(1 + part / 3, width / 2);
            const int left = box.left + across * width, top = box.top + part / 3 * height;
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    const int column = across == 1 ? 0 : x / thickness;
                    const int row = across == 0 ? 0 : y / thickness;
                    canvas_.Pixel(left + x, top + y, (column + row) % 2 == 0 ? kWhite : kBlack);
                }
        }
    }

    // Lines of text in falling sizes, each as large as the panel allows.
    void TextPanel(const Box& box) {
        const struct {
            std::string text;
            double height;  // of a dot, in cells
            Yuv color;
        } lines[] = {
            {"PXBLIB", 1 / 12.0, kWhite},
            {std::to_string(frame_.right) + " X " + std::to_string(frame_.bottom), 1 / 16.0,
             FromRgb(1, 1, 0)},
            {"I420 BT.601", 1 / 24.0, FromRgb(0, 1, 1)},
            {"FRAME " + std::to_string(number_), 1 / 24.0, FromRgb(1, 0, 0)},
            {"THE QUICK BROWN FOX", 1 / 48.0, kWhite},
            {"JUMPS OVER LAZY DOGS", 1 / 48.0, kWhite},
        };
        canvas_.Fill(box, kBlack);
        const int margin = Cells(0.25);
        int top = box.top + margin;
        for (const auto& line : lines) {
            const int widest =
                (box.Width() - margin) / (kGlyphAdvance * static_cast<int>(line.text.size()));
            const int scale = std::min(static_cast<int>(std::lround(line.height * cell_)), widest);
            if (scale < 1) continue;
            canvas_.Text(box.left + margin, top, scale, line.text, line.color);
            top += (kGlyphHeight + 5) * scale;
        }
    }

    void Ramps() {
        const int top = bottom_ - Cells(3), height = Cells(0.5);
        const auto strip = [&](int i) { return Between(top + i * height, top + (i + 1) * height); };
        canvas_.Shade(strip(0),
                      [](double x) { return Grey(std::min(std::floor(x * 11), 10.0) / 10); });
        canvas_.Shade(strip(1), Grey);
        canvas_.Shade(strip(2), Hue);
        canvas_.Shade(strip(3), [](double x) {
            const double part = std::min(std::floor(x * 3), 2.0), level = x * 3 - part;
            return FromRgb(part == 0 ? level : 0, part == 1 ? level : 0, part == 2 ? level : 0);
        });
    }

    Canvas canvas_;
    int number_;
    double turn_;
    Box frame_{};
    int right_, bottom_;  // of the frame without an odd column or row: chroma comes in pairs
    int cell_, center_x_, center_y_;
};

}  // namespace

Picture PaintTestCard(Size size, int number, int count) {
    Picture picture("test card", PXB_I420, size);
    TestCard(picture, number, count).Paint();
    RepeatEdges(picture);
    return picture;
}

}  // namespace pxb::tool
