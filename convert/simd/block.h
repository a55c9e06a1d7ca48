// Colour arithmetic of MMX and SSE2, which multiply words only. All values keep the natural order.
#pragma once
#include "convert/simd/scalar.h"
#include "core/simd/block.h"

namespace pxb::PXB_TARGET {

template <class R, int kBytesPerPixel>
struct ToRgb<Block<R>, kBytesPerPixel> : LanesOf<Block<R>> {
    using V = Block<R>;
    using L = LanesOf<V>;
    using typename L::Lanes;
    using typename L::Samples;
    using Register = typename R::Register;
    struct Uv {
        Lanes u, v;
    };
    struct WeightU {
        Lanes u;
    };
    struct WeightV {
        Lanes v;
    };
    struct WeightUv {
        Lanes u, v;
    };
    struct Packed {
        Samples low, high;
        Uv uv_low, uv_high;
    };

    static PXB_INLINE Lanes Factor(int value) {
        Lanes lanes = L::Set(value);
        R::Hide(lanes.all);
        return lanes;
    }
    static PXB_INLINE WeightU FactorU(int u) { return {Factor(u)}; }
    static PXB_INLINE WeightV FactorV(int v) { return {Factor(v)}; }
    static PXB_INLINE WeightUv FactorUv(int u, int v) { return {Factor(u), Factor(v)}; }

    static PXB_INLINE Samples LoadLuma(const Byte* src) { return {R::LoadAll(src)}; }
    static PXB_INLINE Uv LoadUv(const Byte* u, const Byte* v) {
        return UvOf(V::LoadPairs(u, v).all);
    }
    static PXB_INLINE Uv LoadUv(const Byte* uv) { return UvOf(R::LoadAll(uv)); }
    static PXB_INLINE Packed LoadYuy2(const Byte* src) {
        const Register low = R::LoadAll(src), high = R::LoadAll(src + V::kPixels);
        return {{low}, {high}, TwiceUv(V::HighBytes(low)), TwiceUv(V::HighBytes(high))};
    }
    static PXB_INLINE Packed LoadAyuv(const Byte* src) {
        const auto pixels = V::LoadBgrx(src);
        const Register* const q = pixels.quarter;
        return {{V::LowWords(q[0], q[1])},
                {V::LowWords(q[2], q[3])},
                UvOf(V::HighWords(q[0], q[1])),
                UvOf(V::HighWords(q[2], q[3]))};
    }

    static PXB_INLINE Lanes Weigh(Uv uv, WeightU weight) { return Mul(uv.u, weight.u); }
    static PXB_INLINE Lanes Weigh(Uv uv, WeightV weight) { return Mul(uv.v, weight.v); }
    static PXB_INLINE Lanes Weigh(Uv uv, WeightUv weights) {
        return L::Add(Mul(uv.u, weights.u), Mul(uv.v, weights.v));
    }
    static PXB_INLINE Lanes MulEven(Samples a, Lanes factor) {
        return Mul({R::LowBytes(a.all)}, factor);
    }
    static PXB_INLINE Lanes MulOdd(Samples a, Lanes factor) {
        return Mul({V::HighBytes(a.all)}, factor);
    }

    static PXB_INLINE Samples Join(Lanes even, Lanes odd) {
        const Register apart = R::PackBytes(even.all, odd.all);
        return {R::ZipLow8(apart, R::template ShiftDown<V::kPixels / 2>(apart))};
    }
    static PXB_INLINE Samples Narrow(Lanes low, Lanes high) {
        return {R::PackBytes(low.all, high.all)};
    }
    static PXB_INLINE void Store(Byte* dst, Samples b, Samples g, Samples r) {
        const auto pixels = V::Interleave({b.all}, {g.all}, {r.all});
        if (kBytesPerPixel == 3)
            V::StoreBgr(dst, pixels);
        else
            V::StoreBgrx(dst, pixels);
    }

  private:
    static PXB_INLINE Lanes Mul(Lanes a, Lanes b) { return {R::Mul16(a.all, b.all)}; }
    static PXB_INLINE Lanes Signed(Register a) { return L::Sub({a}, L::Set(128)); }
    static PXB_INLINE Uv UvOf(Register pairs) {
        return {Signed(R::LowBytes(pairs)), Signed(V::HighBytes(pairs))};
    }
    // Of words u, v, once for each pixel of a pair.
    static PXB_INLINE Uv TwiceUv(Register uv) {
        return {Signed(R::EvensTwice16(uv)), Signed(R::OddsTwice16(uv))};
    }
};

template <class R>
struct ToYuv<Block<R>> : InOrderOf<Block<R>>, AyuvOf<Block<R>> {
    using typename AyuvOf<Block<R>>::Sums;
    using V = Block<R>;
    using Register = typename R::Register;
    using Bytes = typename V::Bytes;
    using Pixels = typename V::Pixels;
    struct PairSums {
        Register all;
    };

    template <int kBytesPerPixel>
    static PXB_INLINE Pixels Load(const Byte* src) {
        return kBytesPerPixel == 3 ? V::LoadBgr(src) : V::LoadBgrx(src);
    }
    template <int kB, int kG, int kR, int kOffset>
    static PXB_INLINE Bytes Weigh(const Pixels& a) {
        const Register weights = R::SetBgr0(kB, kG, kR);
        const auto sums = [&](int i) PXB_INLINE_LAMBDA {
            const Register p = a.quarter[i];
            return R::template ShiftRight32<8>(
                R::AddNeighbours(R::MultiplyAdd(R::ZipLow8(p, R::Zero()), weights),
                                 R::MultiplyAdd(R::ZipHigh8(p, R::Zero()), weights)));
        };
        const Register bytes =
            R::PackBytes(R::PackWords(sums(0), sums(1)), R::PackWords(sums(2), sums(3)));
        return {R::Add8(bytes, R::Set16(kOffset * 0x0101))};
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE PairSums WeighPairs(const Pixels& a) {
        return WeighSums<kB, kG, kR, 8>(
            [&](int i) PXB_INLINE_LAMBDA { return R::SumPairs(a.quarter[i]); });
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE PairSums WeighPairs(const Pixels& a, const Pixels& b) {
        return WeighSums<kB, kG, kR, 9>([&](int i) PXB_INLINE_LAMBDA {
            return R::Add16(R::SumPairs(a.quarter[i]), R::SumPairs(b.quarter[i]));
        });
    }
    static PXB_INLINE Bytes PairUp(PairSums u, PairSums v) {
        const Register pairs = R::Or(R::LowBytes(u.all), R::template ShiftLeft16<8>(v.all));
        return {R::Xor(pairs, R::Set16(0x8080))};
    }

    template <int kB, int kG, int kR>
    static PXB_INLINE Sums WeighEach(const Pixels& a) {
        return {{WeighHalf<kB, kG, kR>(a.quarter), WeighHalf<kB, kG, kR>(a.quarter + 2)}};
    }

  private:
    template <int kB, int kG, int kR, int kShift, class PairSum>
    static PXB_INLINE PairSums WeighSums(const PairSum& pair_sum) {
        const Register weights = R::SetBgr0(kB, kG, kR);
        const auto sums = [&](int i) PXB_INLINE_LAMBDA {
            return R::template ShiftRightSigned32<kShift>(R::AddNeighbours(
                R::MultiplyAdd(pair_sum(i), weights), R::MultiplyAdd(pair_sum(i + 1), weights)));
        };
        return {R::PackWords(sums(0), sums(2))};
    }
    template <int kB, int kG, int kR>
    static PXB_INLINE Register WeighHalf(const Register* pixels) {
        const Register bg = V::LowWords(pixels[0], pixels[1]);
        const Register rx = V::HighWords(pixels[0], pixels[1]);
        const Register sum_bg = R::Add16(R::Mul16(R::LowBytes(bg), R::Set16(kB)),
                                         R::Mul16(V::HighBytes(bg), R::Set16(kG)));
        return R::Add16(sum_bg, R::Mul16(R::LowBytes(rx), R::Set16(kR)));
    }
};

}  // namespace pxb::PXB_TARGET
