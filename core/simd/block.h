// The vocabulary of register classes whose registers are one block: MMX and SSE2. R says how such a
// register is loaded, stored and calculated with; what that makes of pixels is written here once.
#pragma once
#include "core/rows.h"

namespace pxb::PXB_TARGET {

template <class R>
struct Block : R {
    using Register = typename R::Register;
    static constexpr bool kStreams = false;
    static constexpr int kPixels = sizeof(Register);
    struct Bytes {
        Register all;
    };
    struct Pixels {
        Register quarter[4];  // kPixels / 4 pixels each
    };
    struct Weights {
        Register even, odd;  // words
    };

    static PXB_INLINE Bytes Load(const Byte* src) { return {R::LoadAll(src)}; }
    static PXB_INLINE Bytes LoadEvens(const Byte* src) {
        return {
            R::PackBytes(R::LowBytes(R::LoadAll(src)), HighBytes(R::LoadAll(src + kPixels - 1)))};
    }
    static PXB_INLINE Bytes LoadPairs(const Byte* first, const Byte* second) {
        return {R::ZipLow8(R::LoadHalf(first), R::LoadHalf(second))};
    }
    static PXB_INLINE Pixels LoadBgr(const Byte* src) {
        const Register a = R::LoadAll(src), b = R::LoadAll(src + kPixels),
                       c = R::LoadAll(src + 2 * kPixels);
        return {{R::Spread(a), R::Spread(R::Or(Down<3>(a), Up<1>(b))),
                 R::Spread(R::Or(Down<2>(b), Up<2>(c))), R::Spread(Down<1>(c))}};
    }
    static PXB_INLINE Pixels LoadBgrx(const Byte* src) {
        return {{R::LoadAll(src), R::LoadAll(src + kPixels), R::LoadAll(src + 2 * kPixels),
                 R::LoadAll(src + 3 * kPixels)}};
    }

    static PXB_INLINE void Store(Byte* dst, Bytes a) { R::StoreAll(dst, a.all); }
    static PXB_INLINE void StorePairs(Byte* first, Byte* second, Bytes pairs) {
        R::StoreHalves(first, second, R::PackBytes(R::LowBytes(pairs.all), HighBytes(pairs.all)));
    }
    static PXB_INLINE void StoreInTurn(Byte* dst, Bytes a, Bytes b) {
        R::StoreAll(dst, R::ZipLow8(a.all, b.all));
        R::StoreAll(dst + kPixels, R::ZipHigh8(a.all, b.all));
    }
    static PXB_INLINE void StoreBgr(Byte* dst, const Pixels& a) {
        R::StoreAll(dst, Squeeze<0>(a));
        R::StoreAll(dst + kPixels, Squeeze<1>(a));
        R::StoreAll(dst + 2 * kPixels, Squeeze<2>(a));
    }
    static PXB_INLINE void StoreBgrx(Byte* dst, const Pixels& a) {
        for (int i = 0; i < 4; ++i) R::StoreAll(dst + i * kPixels, a.quarter[i]);
    }
    static PXB_INLINE void StoreBgr(Byte* dst, Bytes b, Bytes g, Bytes r) {
        StoreBgr(dst, Interleave(b, g, r));
    }

    static PXB_INLINE Bytes Evens(Bytes a, Bytes b) {
        return {R::PackBytes(R::LowBytes(a.all), R::LowBytes(b.all))};
    }
    static PXB_INLINE Bytes Odds(Bytes a, Bytes b) {
        return {R::PackBytes(HighBytes(a.all), HighBytes(b.all))};
    }
    static PXB_INLINE Bytes Average(Bytes a, Bytes b) { return {R::Average(a.all, b.all)}; }
    static PXB_INLINE Weights WeightsOf(Bytes a) { return {R::LowBytes(a.all), HighBytes(a.all)}; }
    template <int kBytes, int kPart>
    static PXB_INLINE Weights LoadWeights(const Byte* src) {
        const Register all = R::LoadAll(src);
        if constexpr (kBytes == 1) return WeightsOf({all});
        if constexpr (kBytes == 2) {
            const Register both =
                kPart == 0 ? R::ZipLow8(all, R::Zero()) : R::ZipHigh8(all, R::Zero());
            return {both, both};
        }
        if constexpr (kBytes == 3)
            return WeightsOf({Squeeze<kPart>(Interleave({all}, {all}, {all}))});
        if constexpr (kBytes == 4) {
            const Pixels pixels = Interleave({all}, {R::Zero()}, {all});
            return WithoutX(pixels.quarter[kPart]);
        }
    }
    template <int kPart>
    static PXB_INLINE Weights LoadWeightsOfX(const Byte* src) {
        return WithoutX(HighBytes(R::OddsTwice16(R::LoadAll(src + kPart * kPixels))));
    }
    // w (b - a) modulo 2^16 of even and of odd bytes; the high byte of it, added modulo 2^8, is exact.
    static PXB_INLINE Bytes Lerp(Bytes a, Bytes b, Weights w) {
        const Register even = R::Mul16(R::Sub16(R::LowBytes(b.all), R::LowBytes(a.all)), w.even);
        const Register odd = R::Mul16(R::Sub16(HighBytes(b.all), HighBytes(a.all)), w.odd);
        return {R::Add8(a.all, R::Or(HighBytes(even), R::And(odd, R::Set16(0xFF00))))};
    }
    template <int kByte>
    static PXB_INLINE Bytes TakeByte(const Pixels& a) {
        const auto pair = [&](int i) PXB_INLINE_LAMBDA {
            return EveryOther<kByte % 2>({a.quarter[i]}, {a.quarter[i + 1]});
        };
        return EveryOther<kByte / 2>(pair(0), pair(2));
    }
    static PXB_INLINE Bytes Reverse(Bytes a) {
        const Register words = SwapWords(R::ReverseLanes(a.all));
        return {R::Or(R::template ShiftLeft16<8>(words), R::template ShiftRight16<8>(words))};
    }
    static PXB_INLINE Pixels Reverse(const Pixels& a) {
        return {{R::ReverseLanes(a.quarter[3]), R::ReverseLanes(a.quarter[2]),
                 R::ReverseLanes(a.quarter[1]), R::ReverseLanes(a.quarter[0])}};
    }
    static PXB_INLINE Pixels LoadBackward(const Byte* src) { return Reverse(LoadBgr(src)); }
    static PXB_INLINE void StoreBackward(Byte* dst, const Pixels& a) { StoreBgr(dst, a); }
    static PXB_INLINE Pixels ReverseYuy2(const Pixels& a) {
        Pixels pixels = Reverse(a);
        for (Register& quarter : pixels.quarter)
            quarter = R::Or(SwapWords(R::LowBytes(quarter)), R::And(quarter, R::Set16(~0xFF)));
        return pixels;
    }
    static PXB_INLINE void Leave() { R::Leave(); }

    // X becomes 0.
    static PXB_INLINE Pixels Interleave(Bytes b, Bytes g, Bytes r) {
        const Register bg_low = R::ZipLow8(b.all, g.all), bg_high = R::ZipHigh8(b.all, g.all);
        const Register r0_low = R::ZipLow8(r.all, R::Zero()),
                       r0_high = R::ZipHigh8(r.all, R::Zero());
        return {{R::ZipLow16(bg_low, r0_low), R::ZipHigh16(bg_low, r0_low),
                 R::ZipLow16(bg_high, r0_high), R::ZipHigh16(bg_high, r0_high)}};
    }
    static PXB_INLINE Register HighBytes(Register a) { return R::template ShiftRight16<8>(a); }
    // The low (high) words of the 32-bit lanes of a and b, in turn. Both together undo themselves.
    static PXB_INLINE Register LowWords(Register a, Register b) {
        return R::Or(R::And(a, R::Set32(0xFFFF)), R::template ShiftLeft32<16>(b));
    }
    static PXB_INLINE Register HighWords(Register a, Register b) {
        return R::Or(R::template ShiftRight32<16>(a), R::And(b, R::Set32(~0xFFFF)));
    }

  private:
    template <int kFirst>
    static PXB_INLINE Bytes EveryOther(Bytes a, Bytes b) {
        return kFirst == 0 ? Evens(a, b) : Odds(a, b);
    }
    // Of words w w for each pixel: the second odd byte of a pixel is X.
    static PXB_INLINE Weights WithoutX(Register twice) {
        return {twice, R::And(twice, R::Set32(0xFFFF))};
    }
    // Register k of the pixels without X. They come from quarters k and k + 1.
    template <int k>
    static PXB_INLINE Register Squeeze(const Pixels& a) {
        return R::Or(Down<k>(R::Squeeze(a.quarter[k])), Up<3 - k>(R::Squeeze(a.quarter[k + 1])));
    }
    // Of each 32-bit lane.
    static PXB_INLINE Register SwapWords(Register a) {
        return R::Or(R::template ShiftLeft32<16>(a), R::template ShiftRight32<16>(a));
    }
    // By quarters of the register.
    template <int kQuarters>
    static PXB_INLINE Register Down(Register a) {
        if (kQuarters == 0) return a;
        return R::template ShiftDown<kQuarters * kPixels / 4>(a);
    }
    template <int kQuarters>
    static PXB_INLINE Register Up(Register a) {
        return R::template ShiftUp<kQuarters * kPixels / 4>(a);
    }
};

}  // namespace pxb::PXB_TARGET
