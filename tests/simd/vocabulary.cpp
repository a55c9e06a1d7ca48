#include "simd/vocabulary.h"

#include "convert/simd/color.h"

namespace pxb::PXB_TARGET {
namespace {

constexpr int kBytes = 512;

// What an operation reads and writes: bytes that do not repeat, and up to 4 bytes a pixel.
struct Bench {
    const Byte *a, *b, *c;
    Byte* out;
};

// ---- On bytes and pixels ----

struct LoadStore {
    static constexpr const char* kName = "Load, Store";
    template <class V>
    static void Run(const Bench& on, int x) {
        V::Store(on.out + x, V::Load(on.a + x));
    }
};
struct LoadPairs {
    static constexpr const char* kName = "LoadPairs";
    template <class V>
    static void Run(const Bench& on, int x) {
        V::Store(on.out + x, V::LoadPairs(on.a + x / 2, on.b + x / 2));
    }
};
struct StorePairs {
    static constexpr const char* kName = "StorePairs";
    template <class V>
    static void Run(const Bench& on, int x) {
        V::StorePairs(on.out + x / 2, on.out + 256 + x / 2, V::Load(on.a + x));
    }
};
struct StoreInTurn {
    static constexpr const char* kName = "StoreInTurn";
    template <class V>
    static void Run(const Bench& on, int x) {
        V::StoreInTurn(on.out + 2 * x, V::Load(on.a + x), V::Load(on.b + x));
    }
};
struct BgrToBgrx {
    static constexpr const char* kName = "LoadBgr, StoreBgrx";
    template <class V>
    static void Run(const Bench& on, int x) {
        V::StoreBgrx(on.out + 4 * x, V::LoadBgr(on.a + 3 * x));
    }
};
struct BgrxToBgr {
    static constexpr const char* kName = "LoadBgrx, StoreBgr";
    template <class V>
    static void Run(const Bench& on, int x) {
        V::StoreBgr(on.out + 3 * x, V::LoadBgrx(on.a + 4 * x));
    }
};
struct StoreChannels {
    static constexpr const char* kName = "StoreBgr of channels";
    template <class V>
    static void Run(const Bench& on, int x) {
        V::StoreBgr(on.out + 3 * x, V::Load(on.a + x), V::Load(on.b + x), V::Load(on.c + x));
    }
};
struct EvensOdds {
    static constexpr const char* kName = "Evens, Odds";
    template <class V>
    static void Run(const Bench& on, int x) {
        const auto low = V::Load(on.a + 2 * x), high = V::Load(on.a + 2 * x + V::kPixels);
        V::Store(on.out + x, V::Evens(low, high));
        V::Store(on.out + 256 + x, V::Odds(low, high));
    }
};
struct Average {
    static constexpr const char* kName = "Average";
    template <class V>
    static void Run(const Bench& on, int x) {
        V::Store(on.out + x, V::Average(V::Load(on.a + x), V::Load(on.b + x)));
    }
};
template <int kByte>
struct TakeByte {
    static constexpr const char* kName = "TakeByte";
    template <class V>
    static void Run(const Bench& on, int x) {
        V::Store(on.out + x, V::template TakeByte<kByte>(V::LoadBgrx(on.a + 4 * x)));
    }
};

// ---- From YUV to RGB: order of lanes, arithmetic, clamps ----

template <class C, class Lanes>
PXB_INLINE Lanes Lowered(Lanes a) {  // below 0, within bytes, and above
    return C::template ShiftRight<1>(C::Sub(C::AddSaturated(C::Add(a, a), a), C::Set(200)));
}

template <int kBytesPerPixel>
struct PlanarToRgb {
    static constexpr const char* kName = "LoadLuma, LoadUv, Join, Store";
    template <class V>
    static void Run(const Bench& on, int x) {
        using C = ToRgb<V, kBytesPerPixel>;
        const auto luma = C::LoadLuma(on.a + x);
        const auto uv = C::LoadUv(on.b + x / 2, on.c + x / 2), pairs = C::LoadUv(on.b + x);
        const auto even = C::MulEven(luma, C::Factor(74)), odd = C::MulOdd(luma, C::Factor(1));
        const auto u = C::Weigh(uv, C::FactorU(129)), v = C::Weigh(pairs, C::FactorV(102));
        const auto both = C::Weigh(uv, C::FactorUv(25, 52));
        C::Store(on.out + kBytesPerPixel * x, C::Join(Lowered<C>(odd), odd),
                 C::Join(C::template ShiftRight<6>(C::AddSaturated(even, u)),
                         C::template ShiftRight<6>(C::Sub(even, both))),
                 C::Join(C::template ShiftRight<6>(v), odd));
    }
};
template <int kBytesPerPixel>
struct Yuy2ToRgb {
    static constexpr const char* kName = "LoadYuy2, Narrow, Store";
    template <class V>
    static void Run(const Bench& on, int x) {
        using C = ToRgb<V, kBytesPerPixel>;
        const auto yuy2 = C::LoadYuy2(on.a + 2 * x);
        const auto low = C::MulEven(yuy2.low, C::Factor(1));
        const auto high = C::MulEven(yuy2.high, C::Factor(1));
        const auto weighed = [&](auto weights) PXB_INLINE_LAMBDA {
            return C::Narrow(C::Weigh(yuy2.uv_low, weights), C::Weigh(yuy2.uv_high, weights));
        };
        C::Store(on.out + kBytesPerPixel * x, C::Narrow(Lowered<C>(low), Lowered<C>(high)),
                 weighed(C::FactorU(1)), weighed(C::FactorUv(1, 2)));
    }
};
struct AyuvToBgra {
    static constexpr const char* kName = "LoadAyuv, StoreBgra";
    template <class V>
    static void Run(const Bench& on, int x) {
        using C = ToRgb<V, 4>;
        struct Channels {
            typename C::Lanes blue, green, red;
        };
        const auto ayuv = C::LoadAyuv(on.a + 4 * x);
        const auto channels = [](auto samples, auto uv) PXB_INLINE_LAMBDA {
            return Channels{C::MulOdd(samples, C::Factor(1)), C::Weigh(uv, C::FactorU(1)),
                            C::Weigh(uv, C::FactorV(2))};
        };
        C::StoreBgra(on.out + 4 * x, channels(ayuv.low, ayuv.uv_low),
                     channels(ayuv.high, ayuv.uv_high), ayuv);
    }
};

// ---- From RGB to YUV ----

template <int kBytesPerPixel>
struct RgbToPlanes {
    static constexpr const char* kName = "Weigh, WeighPairs, PairUp, Store, StorePairs";
    template <class V>
    static void Run(const Bench& on, int x) {
        using C = ToYuv<V>;
        const auto top = C::template Load<kBytesPerPixel>(on.a + kBytesPerPixel * x);
        const auto bottom = C::template Load<kBytesPerPixel>(on.b + kBytesPerPixel * x);
        const auto pairs = C::PairUp(C::template WeighPairs<56, -37, -19>(top, bottom),
                                     C::template WeighPairs<-9, -47, 56>(top, bottom));
        C::Store(on.out + x, C::template Weigh<25, 129, 66, 16>(bottom));
        C::Store(on.out + 128 + x, pairs);
        C::StorePairs(on.out + 256 + x / 2, on.out + 384 + x / 2, pairs);
    }
};
template <int kBytesPerPixel>
struct RgbToYuy2 {
    static constexpr const char* kName = "WeighPairs, PairUp, StoreYuy2";
    template <class V>
    static void Run(const Bench& on, int x) {
        using C = ToYuv<V>;
        const auto rgb = C::template Load<kBytesPerPixel>(on.a + kBytesPerPixel * x);
        C::StoreYuy2(on.out + 2 * x, C::template Weigh<28, 151, 77, 0>(rgb),
                     C::PairUp(C::template WeighPairs<56, -37, -19>(rgb),
                               C::template WeighPairs<-9, -47, 56>(rgb)));
    }
};
struct BgraToAyuv {
    static constexpr const char* kName = "WeighEach, StoreAyuv";
    template <class V>
    static void Run(const Bench& on, int x) {
        using C = ToYuv<V>;
        const auto pixels = V::LoadBgrx(on.a + 4 * x);
        C::template StoreAyuv<16>(on.out + 4 * x, pixels,
                                  C::template WeighEach<25, 129, 66>(pixels),
                                  C::template WeighEach<112, -74, -38>(pixels),
                                  C::template WeighEach<-18, -94, 112>(pixels));
    }
};

// ---- Every operation, in every class ----

template <class Operation, class V>
void Fill(const Bench& on, int pixels) {
    for (int x = 0; x < pixels; x += V::kPixels) Operation::template Run<V>(on, x);
}

template <class Operation, class V>
void CheckIn(const Byte* noise, void (*differs)(const char*, int)) {
    if (V::kPixels < 2) return;  // has no pairs; whole rows show what it does
    alignas(64) Byte got[kBytes], wanted[kBytes];
    for (int i = 0; i < kBytes; ++i) got[i] = wanted[i] = noise[i];
    const Bench on = {noise + 1, noise + 1001, noise + 2001, got};
    Fill<Operation, V>(on, V::kPixels);
    Fill<Operation, Scalar<2>>({on.a, on.b, on.c, wanted}, V::kPixels);
    V::Leave();
    for (int i = 0; i < kBytes; ++i)
        if (got[i] != wanted[i]) return differs(Operation::kName, V::kPixels);
}

template <class... V>
struct Classes {
    template <class Operation>
    static void Check(const Byte* noise, void (*differs)(const char*, int)) {
        const auto check = [=]<class Class>() {
            if constexpr (Class::kPixels > 1) CheckIn<Operation, Class>(noise, differs);
        };
        (check.template operator()<V>(), ...);
    }
};

template <class... Operation>
void CheckAll(const Byte* noise, void (*differs)(const char*, int)) {
    (Classes<PXB_WIDTHS>::Check<Operation>(noise, differs), ...);
}

}  // namespace

void CheckVocabulary(const Byte* noise, void (*differs)(const char* name, int pixels)) {
    CheckAll<LoadStore, LoadPairs, StorePairs, StoreInTurn, BgrToBgrx, BgrxToBgr, StoreChannels,
             EvensOdds, Average, TakeByte<0>, TakeByte<1>, TakeByte<2>, TakeByte<3>, PlanarToRgb<3>,
             PlanarToRgb<4>, Yuy2ToRgb<3>, Yuy2ToRgb<4>, AyuvToBgra, RgbToPlanes<3>, RgbToPlanes<4>,
             RgbToYuy2<3>, RgbToYuy2<4>, BgraToAyuv>(noise, differs);
}

}  // namespace pxb::PXB_TARGET
