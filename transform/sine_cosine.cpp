// Reduction to +-pi/4 and Taylor series, in pairs of doubles whose sum carries about 106 bits. Only
// + - * / in the order written here; the compiler must not contract or reorder them.
#include "transform/sine_cosine.h"

namespace pxb::PXB_DOUBLES {
namespace {

// high + low, |low| at most half a unit in the last place of high.
struct Pair {
    double high, low;
};

// a + b exactly; the second form wants |a| >= |b|.
Pair SumOf(double a, double b) {
    const double sum = a + b, part = sum - a;
    return {sum, (a - (sum - part)) + (b - part)};
}
Pair QuickSumOf(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

// a * b exactly, by halves of 26 bits.
Pair ProductOf(double a, double b) {
    constexpr double kSplit = 134217729.0;  // 2^27 + 1
    const double product = a * b, wide_a = kSplit * a, wide_b = kSplit * b;
    const double a1 = wide_a - (wide_a - a), b1 = wide_b - (wide_b - b);
    const double a2 = a - a1, b2 = b - b1;
    return {product, ((a1 * b1 - product) + a1 * b2 + a2 * b1) + a2 * b2};
}

Pair Add(Pair a, Pair b) {
    const Pair high = SumOf(a.high, b.high), low = SumOf(a.low, b.low);
    const Pair sum = QuickSumOf(high.high, high.low + low.high);
    return QuickSumOf(sum.high, sum.low + low.low);
}

Pair Multiply(Pair a, Pair b) {
    const Pair product = ProductOf(a.high, b.high);
    return QuickSumOf(product.high, product.low + (a.high * b.low + a.low * b.high));
}

Pair Divide(Pair a, double b) {
    const double quotient = a.high / b;
    const Pair product = ProductOf(quotient, b);
    return QuickSumOf(quotient, ((a.high - product.high) - product.low + a.low) / b);
}

double Magnitude(Pair a) {
    return a.high < 0 ? -a.high : a.high;
}

}  // namespace

PXB_NOINLINE void ComputeSineAndCosine(double radians, double* sine, double* cosine) {
    // pi / 2 in four parts, the first two so short that up to 2^26 times them is exact.
    constexpr double kHalfPi[] = {0x1.921fb5p+0, 0x1.110b46p-26, 0x1.1a62633145c07p-54,
                                  -0x1.f1976b7ed8fbcp-110};
    constexpr double kQuartersPerRadian = 0.63661977236758134308;
    const double quarters = radians * kQuartersPerRadian;
    const auto turns =
        static_cast<std::int32_t>(Truncate(quarters < 0 ? quarters - 0.5 : quarters + 0.5));
    const double count = turns;
    Pair rest = SumOf(radians - count * kHalfPi[0], -(count * kHalfPi[1]));
    rest = Add(rest, ProductOf(-count, kHalfPi[2]));
    rest = Add(rest, {-count * kHalfPi[3], 0});

    // |rest| <= pi / 4: what follows the last term is below 2^-110 of the sums. Near whole quarters
    // that is so much earlier.
    constexpr int kTerms = 14;
    constexpr double kNothing = 0x1p-112;
    const Pair square = Multiply(rest, rest);
    Pair sine_term = rest, sine_sum = rest, cosine_term = {1, 0}, cosine_sum = {1, 0};
    for (int k = 1; k <= kTerms; ++k) {
        sine_term = Divide(Multiply(sine_term, square), -(2.0 * k) * (2 * k + 1));
        sine_sum = Add(sine_sum, sine_term);
        cosine_term = Divide(Multiply(cosine_term, square), -(2.0 * k) * (2 * k - 1));
        cosine_sum = Add(cosine_sum, cosine_term);
        if (Magnitude(sine_term) <= kNothing * Magnitude(sine_sum) &&
            Magnitude(cosine_term) <= kNothing * Magnitude(cosine_sum))
            break;
    }
    const double s = sine_sum.high + sine_sum.low, c = cosine_sum.high + cosine_sum.low;
    const double quadrants[] = {s, c, -s, -c};
    *sine = quadrants[turns & 3];
    *cosine = quadrants[(turns + 1) & 3];
}

}  // namespace pxb::PXB_DOUBLES
