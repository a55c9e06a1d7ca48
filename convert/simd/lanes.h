// Colour arithmetic that reads alike in several classes, over the register operations of V.
#pragma once
#include "core/byte.h"

namespace pxb::PXB_TARGET {

// On the way to RGB.
template <class V>
struct LanesOf {
    using Register = typename V::Register;
    struct Lanes {
        Register all;
    };
    struct Samples {
        Register all;
    };

    static PXB_INLINE Lanes Set(int value) { return {V::Set16(value)}; }
    static PXB_INLINE Lanes Add(Lanes a, Lanes b) { return {V::Add16(a.all, b.all)}; }
    static PXB_INLINE Lanes Sub(Lanes a, Lanes b) { return {V::Sub16(a.all, b.all)}; }
    static PXB_INLINE Lanes AddSaturated(Lanes a, Lanes b) {
        return {V::AddSaturated16(a.all, b.all)};
    }
    template <int kBits>
    static PXB_INLINE Lanes ShiftRight(Lanes a) {
        return {V::template ShiftRightSigned16<kBits>(a.all)};
    }
    template <class Channels, class Packed>
    static PXB_INLINE void StoreBgra(Byte* dst, const Channels& low, const Channels& high,
                                     const Packed& ayuv) {
        StoreHalf(dst, low, ayuv.low);
        StoreHalf(dst + 2 * sizeof(Register), high, ayuv.high);
    }

  private:
    template <class Channels>
    static PXB_INLINE void StoreHalf(Byte* dst, const Channels& c, Samples alpha) {
        const Register br = V::PackBytes(c.blue.all, c.red.all);
        const Register ga = V::PackBytes(c.green.all, V::LowBytes(alpha.all));
        const Register bg = V::ZipLow8(br, ga), ra = V::ZipHigh8(br, ga);
        V::StoreAll(dst, V::LowWords(bg, ra));
        V::StoreAll(dst + sizeof(Register), V::HighWords(bg, ra));
    }
};

// The same where registers multiply bytes and add neighbouring products.
template <class V>
struct ByteLanesOf : LanesOf<V> {
    using Register = typename V::Register;
    using typename LanesOf<V>::Lanes;
    using typename LanesOf<V>::Samples;
    struct Uv {
        Register all;  // signed bytes u, v in each 16-bit lane
    };
    struct Weights {
        Register all;  // unsigned bytes in the order of Uv
    };
    struct Packed {
        Samples low, high;
        Uv uv_low, uv_high;
    };

    static PXB_INLINE Lanes Factor(int value) { return {V::Set16(value)}; }
    static PXB_INLINE Weights FactorU(int u) { return FactorUv(u, 0); }
    static PXB_INLINE Weights FactorV(int v) { return FactorUv(0, v); }
    static PXB_INLINE Weights FactorUv(int u, int v) { return {V::Set16(u | v << 8)}; }

    static PXB_INLINE Uv Signed(Register uv) { return {V::Xor(uv, V::Set16(0x8080))}; }
    static PXB_INLINE Packed LoadAyuv(const Byte* src) {
        const auto pixels = V::LoadBgrx(src);
        const Register* const q = pixels.quarter;
        return {{V::LowWords(q[0], q[1])},
                {V::LowWords(q[2], q[3])},
                Signed(V::HighWords(q[0], q[1])),
                Signed(V::HighWords(q[2], q[3]))};
    }

    static PXB_INLINE Lanes Weigh(Uv uv, Weights weights) {
        return {V::MultiplyAddBytes(weights.all, uv.all)};
    }
    static PXB_INLINE Lanes MulEven(Samples a, Lanes factor) {
        return {V::MultiplyAddBytes(a.all, factor.all)};
    }
    static PXB_INLINE Lanes MulOdd(Samples a, Lanes factor) {
        return {V::MultiplyAddBytes(a.all, V::template ShiftLeft16<8>(factor.all))};
    }
};

// On the way to YUV, where samples come out in the order of memory.
template <class V>
struct InOrderOf {
    using Bytes = typename V::Bytes;
    static PXB_INLINE void Store(Byte* dst, const Bytes& a) { V::Store(dst, a); }
    static PXB_INLINE void StorePairs(Byte* u, Byte* v, const Bytes& pairs) {
        V::StorePairs(u, v, pairs);
    }
    static PXB_INLINE void StoreYuy2(Byte* dst, const Bytes& luma, const Bytes& pairs) {
        V::StoreInTurn(dst, luma, pairs);
    }
};

// From RGB32 to AYUV32.
template <class V>
struct AyuvOf {
    using Register = typename V::Register;
    using Pixels = typename V::Pixels;
    struct Sums {
        Register half[2];  // unsigned 16-bit lanes, one for each pixel
    };

    template <int kLumaOffset>
    static PXB_INLINE void StoreAyuv(Byte* dst, const Pixels& alpha, const Sums& y, const Sums& u,
                                     const Sums& v) {
        for (int i = 0; i < 2; ++i, dst += 2 * sizeof(Register)) {
            const Register* const pixels = alpha.quarter + 2 * i;
            const Register a = HighBytes(V::HighWords(pixels[0], pixels[1]));
            const Register luma = V::Add16(HighByte(y.half[i]), V::Set16(kLumaOffset << 8));
            const Register uv = V::Or(HighBytes(u.half[i]), HighByte(v.half[i]));
            const Register ay = V::Or(a, luma), raised = V::Xor(uv, V::Set16(0x8080));
            V::StoreAll(dst, V::LowWords(ay, raised));
            V::StoreAll(dst + sizeof(Register), V::HighWords(ay, raised));
        }
    }

  private:
    static PXB_INLINE Register HighBytes(Register a) { return V::template ShiftRight16<8>(a); }
    static PXB_INLINE Register HighByte(Register a) { return V::And(a, V::Set16(0xFF00)); }
};

template <class V>
struct ByteAyuvOf : AyuvOf<V> {
    using Register = typename V::Register;
    using typename AyuvOf<V>::Pixels;
    using typename AyuvOf<V>::Sums;

    template <int kB, int kG, int kR>
    static PXB_INLINE Sums WeighEach(const Pixels& a) {
        return {{WeighHalf<kB, kG, kR>(a.quarter), WeighHalf<kB, kG, kR>(a.quarter + 2)}};
    }

  private:
    // A weight of G that a signed byte does not hold is added in two parts.
    template <int kB, int kG, int kR>
    static PXB_INLINE Register WeighHalf(const Register* pixels) {
        constexpr int kFirstG = kG > 127 ? kG - 127 : kG;
        const Register bg = V::LowWords(pixels[0], pixels[1]);
        const Register rx = V::HighWords(pixels[0], pixels[1]);
        const Register sum =
            V::Add16(V::MultiplyAddBytes(bg, V::Set16((kB & 0xFF) | kFirstG * 256)),
                     V::MultiplyAddBytes(rx, V::Set16(kR & 0xFF)));
        if (kG == kFirstG) return sum;
        return V::Add16(sum, V::MultiplyAddBytes(bg, V::Set16(127 << 8)));
    }
};

}  // namespace pxb::PXB_TARGET
