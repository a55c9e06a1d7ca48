#include "transform/affine.h"

#include "transform/sine_cosine.h"

namespace pxb::PXB_DOUBLES {
namespace {

// Points are rows [x y 1], multiplied on the right.
struct Matrix {
    double at[3][3];
};

Matrix Multiply(const Matrix& a, const Matrix& b) {
    Matrix product;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            product.at[i][j] =
                (a.at[i][0] * b.at[0][j] + a.at[i][1] * b.at[1][j]) + a.at[i][2] * b.at[2][j];
    return product;
}

Matrix Translation(double x, double y) {
    return {{{1, 0, 0}, {0, 1, 0}, {x, y, 1}}};
}

Matrix Scale(double x, double y) {
    return {{{x, 0, 0}, {0, y, 0}, {0, 0, 1}}};
}

// A cosine near 0 becomes 0, a sine is taken as it is: at 180 degrees it is -7e-15.
Matrix Rotation(std::int32_t angle_degrees) {
    constexpr double kPi = 3.1415926535898;  // to 14 digits: every byte depends on it
    constexpr double kNoCosine = 0.0001f;
    double s, c;
    ComputeSineAndCosine((angle_degrees / 180.0) * kPi, &s, &c);
    if (c < kNoCosine && c > -kNoCosine) c = 0.0;
    return {{{c, s, 0}, {-s, c, 0}, {0, 0, 1}}};
}

}  // namespace

PXB_NOINLINE void TurnAboutCentres(std::int32_t angle_degrees, const Raster<Byte>& dst,
                                   const Raster<const Byte>& src, Affine* map) {
    const Matrix from_centre = Translation(-0.5 * dst.width, -0.5 * dst.height);
    const Matrix to_centre = Translation(0.5 * src.width, 0.5 * src.height);
    const Matrix scaled = Multiply(from_centre, Scale(1.0, 1.0));
    const Matrix m = Multiply(Multiply(scaled, Rotation(angle_degrees)), to_centre);
    *map = {m.at[0][0], m.at[1][0], m.at[2][0], m.at[0][1], m.at[1][1], m.at[2][1]};
}

}  // namespace pxb::PXB_DOUBLES
