// A double made of integers, rounded to nearest, ties to even, at every step. Nothing that a
// floating-point unit does or is told to do can change its results.
#pragma once
#include <bit>
#include <cmath>
#include <cstdint>

class SoftDouble {
  public:
    SoftDouble(std::int64_t whole = 0)
        : SoftDouble(whole < 0, static_cast<std::uint64_t>(whole < 0 ? -whole : whole), 0, false) {}

    // The number that the compiler makes of a literal, which must be positive and normal.
    static SoftDouble Of(double literal) {
        const auto bits = std::bit_cast<std::uint64_t>(literal);
        constexpr std::uint64_t kHidden = std::uint64_t{1} << 52;
        return {false, (bits & (kHidden - 1)) | kHidden, static_cast<int>(bits >> 52) - 1075,
                false};
    }

    SoftDouble operator-() const {
        SoftDouble result = *this;
        result.negative_ = !negative_;
        return result;
    }
    SoftDouble Half() const {
        SoftDouble result = *this;
        --result.exponent_;
        return result;
    }

    friend SoftDouble operator+(const SoftDouble& x, const SoftDouble& y) {
        if (y.mantissa_ == 0) return x;
        if (x.mantissa_ == 0 || IsSmaller(x, y)) return y + x;
        constexpr int kSpare = 10;  // bits below the mantissas, so that what is cut off stays small
        const int shift = x.exponent_ - y.exponent_;
        const std::uint64_t large = x.mantissa_ << kSpare, small = y.mantissa_ << kSpare;
        const std::uint64_t aligned = shift < 64 ? small >> shift : 0;
        const bool rest = shift >= 64 || aligned << shift != small;
        const std::uint64_t sum =
            x.negative_ == y.negative_ ? large + aligned : large - aligned - rest;
        return {x.negative_, sum, x.exponent_ - kSpare, rest};
    }
    friend SoftDouble operator-(const SoftDouble& x, const SoftDouble& y) { return x + -y; }

    // The factor has up to 11 bits.
    friend SoftDouble operator*(const SoftDouble& x, int factor) {
        return {x.negative_, x.mantissa_ * static_cast<unsigned>(factor), x.exponent_, false};
    }

    friend SoftDouble operator/(const SoftDouble& x, const SoftDouble& y) {
        constexpr int kBits = 60;
        std::uint64_t rest = x.mantissa_, quotient = 0;
        for (int i = 0; i <= kBits; ++i) {
            const bool fits = rest >= y.mantissa_;
            quotient = quotient << 1 | fits;
            rest = (rest - (fits ? y.mantissa_ : 0)) << 1;
        }
        return {x.negative_ != y.negative_, quotient, x.exponent_ - y.exponent_ - kBits, rest != 0};
    }

    friend bool operator<(const SoftDouble& x, const SoftDouble& y) {
        const SoftDouble difference = x - y;
        return difference.negative_ && difference.mantissa_ != 0;
    }

    std::int64_t Truncated() const {
        if (exponent_ <= -64) return 0;
        const std::uint64_t size = exponent_ < 0 ? mantissa_ >> -exponent_ : mantissa_ << exponent_;
        return negative_ ? -static_cast<std::int64_t>(size) : static_cast<std::int64_t>(size);
    }
    std::int64_t Floor() const {
        const std::int64_t whole = Truncated();
        return whole - (*this < SoftDouble(whole));
    }

    // Exact.
    double Hard() const {
        const double size = std::ldexp(static_cast<double>(mantissa_), exponent_);
        return negative_ ? -size : size;
    }

  private:
    // Rounds `size` * 2^exponent and a rest below that, if any. With a rest, `size` has more than
    // 54 bits.
    SoftDouble(bool negative, std::uint64_t size, int exponent, bool rest) {
        if (size == 0) return;
        const int zeros = std::countl_zero(size);
        size <<= zeros;
        constexpr std::uint64_t kCut = 0x7FF, kHalf = 0x400;
        mantissa_ = size >> 11;
        const std::uint64_t cut = size & kCut;
        mantissa_ += cut > kHalf || (cut == kHalf && (rest || mantissa_ % 2));
        exponent_ = exponent - zeros + 11;
        negative_ = negative;
        if (mantissa_ >> 53) mantissa_ >>= 1, ++exponent_;
    }

    // Of the absolute values, neither of them 0.
    static bool IsSmaller(const SoftDouble& x, const SoftDouble& y) {
        return x.exponent_ != y.exponent_ ? x.exponent_ < y.exponent_ : x.mantissa_ < y.mantissa_;
    }

    bool negative_ = false;
    std::uint64_t mantissa_ = 0;  // 0, or of 53 bits
    int exponent_ = 0;
};
