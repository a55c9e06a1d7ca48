// One or two pixels in plain integers: the ends of rows, and what each operation means.
#pragma once
#include "core/rows.h"

namespace pxb::PXB_TARGET {

template <int kCount>
struct Scalar {
    static constexpr bool kStreams = false;
    static constexpr int kPixels = kCount;
    struct Bytes {
        int at[kCount];
    };
    struct Pixels {
        Byte at[kCount][4];
    };
    using Weights = Bytes;

    static PXB_INLINE Bytes Load(const Byte* src) {
        Bytes bytes;
        for (int i = 0; i < kCount; ++i) bytes.at[i] = src[i];
        return bytes;
    }
    static PXB_INLINE Bytes LoadEvens(const Byte* src) {
        Bytes bytes;
        for (int i = 0; i < kCount; ++i) bytes.at[i] = src[2 * i];
        return bytes;
    }
    static PXB_INLINE Bytes LoadPairs(const Byte* first, const Byte* second) {
        static_assert(kCount == 2);
        return {{*first, *second}};
    }
    static PXB_INLINE Pixels LoadBgr(const Byte* src) { return LoadPixels<3>(src); }
    static PXB_INLINE Pixels LoadBgrx(const Byte* src) { return LoadPixels<4>(src); }

    static PXB_INLINE void Store(Byte* dst, const Bytes& a) {
        for (int i = 0; i < kCount; ++i) dst[i] = static_cast<Byte>(a.at[i]);
    }
    static PXB_INLINE void StorePairs(Byte* first, Byte* second, const Bytes& pairs) {
        static_assert(kCount == 2);
        *first = static_cast<Byte>(pairs.at[0]);
        *second = static_cast<Byte>(pairs.at[1]);
    }
    static PXB_INLINE void StoreInTurn(Byte* dst, const Bytes& a, const Bytes& b) {
        for (int i = 0; i < kCount; ++i) {
            dst[2 * i] = static_cast<Byte>(a.at[i]);
            dst[2 * i + 1] = static_cast<Byte>(b.at[i]);
        }
    }
    static PXB_INLINE void StoreBgr(Byte* dst, const Pixels& a) { StorePixels<3>(dst, a); }
    static PXB_INLINE void StoreBgrx(Byte* dst, const Pixels& a) { StorePixels<4>(dst, a); }
    static PXB_INLINE void StoreBgr(Byte* dst, const Bytes& b, const Bytes& g, const Bytes& r) {
        for (int i = 0; i < kCount; ++i) {
            dst[3 * i] = static_cast<Byte>(b.at[i]);
            dst[3 * i + 1] = static_cast<Byte>(g.at[i]);
            dst[3 * i + 2] = static_cast<Byte>(r.at[i]);
        }
    }

    static PXB_INLINE Bytes Evens(const Bytes& a, const Bytes& b) {
        if constexpr (kCount == 2) return {{a.at[0], b.at[0]}};
        return a;
    }
    static PXB_INLINE Bytes Odds(const Bytes& a, const Bytes& b) {
        if constexpr (kCount == 2) return {{a.at[1], b.at[1]}};
        return b;
    }
    static PXB_INLINE Bytes Average(const Bytes& a, const Bytes& b) {
        Bytes bytes;
        for (int i = 0; i < kCount; ++i) bytes.at[i] = (a.at[i] + b.at[i] + 1) >> 1;
        return bytes;
    }
    static PXB_INLINE Weights WeightsOf(const Bytes& a) { return a; }
    template <int kBytes, int kPart>
    static PXB_INLINE Weights LoadWeights(const Byte* src) {
        return WeightsOfPart<kBytes, kPart>(src, 1);
    }
    template <int kPart>
    static PXB_INLINE Weights LoadWeightsOfX(const Byte* src) {
        return WeightsOfPart<4, kPart>(src + 3, 4);
    }
    static PXB_INLINE Bytes Lerp(const Bytes& a, const Bytes& b, const Weights& w) {
        Bytes bytes;
        for (int i = 0; i < kCount; ++i)
            bytes.at[i] = a.at[i] + (w.at[i] * (b.at[i] - a.at[i]) >> 8);
        return bytes;
    }
    template <int kByte>
    static PXB_INLINE Bytes TakeByte(const Pixels& a) {
        Bytes bytes;
        for (int i = 0; i < kCount; ++i) bytes.at[i] = a.at[i][kByte];
        return bytes;
    }
    static PXB_INLINE Bytes Reverse(const Bytes& a) {
        Bytes bytes;
        for (int i = 0; i < kCount; ++i) bytes.at[i] = a.at[kCount - 1 - i];
        return bytes;
    }
    static PXB_INLINE Pixels Reverse(const Pixels& a) {
        Pixels pixels;
        for (int i = 0; i < kCount; ++i)
            for (int k = 0; k < 4; ++k) pixels.at[i][k] = a.at[kCount - 1 - i][k];
        return pixels;
    }
    static PXB_INLINE Pixels LoadBackward(const Byte* src) { return Reverse(LoadBgr(src)); }
    static PXB_INLINE void StoreBackward(Byte* dst, const Pixels& a) { StoreBgr(dst, a); }
    static PXB_INLINE Pixels ReverseYuy2(const Pixels& a) {
        Pixels pixels = Reverse(a);
        for (int i = 0; i < kCount; ++i) {
            pixels.at[i][0] = a.at[kCount - 1 - i][2];
            pixels.at[i][2] = a.at[kCount - 1 - i][0];
        }
        return pixels;
    }
    static PXB_INLINE void Leave() {}

  private:
    // The weight of pixel i is src[i * step].
    template <int kBytes, int kPart>
    static PXB_INLINE Weights WeightsOfPart(const Byte* src, int step) {
        Weights weights;
        for (int i = 0; i < kCount; ++i) {
            const int byte = kPart * kCount + i;
            weights.at[i] = byte % 4 == 3 && kBytes == 4 ? 0 : src[byte / kBytes * step];
        }
        return weights;
    }
    template <int kBytes>
    static PXB_INLINE Pixels LoadPixels(const Byte* src) {
        Pixels pixels = {};
        for (int i = 0; i < kCount; ++i)
            for (int k = 0; k < kBytes; ++k) pixels.at[i][k] = src[kBytes * i + k];
        return pixels;
    }
    template <int kBytes>
    static PXB_INLINE void StorePixels(Byte* dst, const Pixels& a) {
        for (int i = 0; i < kCount; ++i)
            for (int k = 0; k < kBytes; ++k) dst[kBytes * i + k] = a.at[i][k];
    }
};

}  // namespace pxb::PXB_TARGET
