#include "simd/vocabulary.h"

#include "convert/simd/color.h"

namespace pxb::PXB_TARGET {
namespace {

constexpr int kBytes = 512;

// What a step reads, up to 4 bytes a pixel from each place, and where it writes.
struct Bench {
    const Byte *a, *b, *c;
    Byte* out;
};

class Comparison {
  public:
    Comparison(const Byte* noise, void (*differs)(const char*, int))
        : noise_(noise), differs_(differs) {}

    // step<V>(on, x) does V::kPixels pixels from x on: those of each class at once, and in pairs of
    // plain integers. Scalar<1> has no pairs; whole rows show what it does.
    template <class Step>
    void operator()(const char* name, const Step& step) const {
        const auto check = [&]<class V>() {
            if constexpr (V::kPixels > 1) CompareIn<V>(name, step);
        };
        CallForAll<PXB_WIDTHS>(check);
    }

  private:
    template <class... V, class Check>
    static void CallForAll(const Check& check) {
        (check.template operator()<V>(), ...);
    }

    template <class V, class Step>
    void CompareIn(const char* name, const Step& step) const {
        alignas(64) Byte got[kBytes], wanted[kBytes];
        for (int i = 0; i < kBytes; ++i) got[i] = wanted[i] = noise_[i];
        Bench on = {noise_ + 1, noise_ + 1001, noise_ + 2001, got};
        step.template operator()<V>(on, 0);
        V::Leave();
        on.out = wanted;
        for (int x = 0; x < V::kPixels; x += 2) step.template operator()<Scalar<2>>(on, x);
        for (int i = 0; i < kBytes; ++i)
            if (got[i] != wanted[i]) return differs_(name, V::kPixels);
    }

    const Byte* noise_;
    void (*differs_)(const char* name, int pixels);
};

template <int kByte>
void CheckTakeByte(const Comparison& compare) {
    compare("TakeByte", []<class V>(const Bench& on, int x) {
        V::Store(on.out + x, V::template TakeByte<kByte>(V::LoadBgrx(on.a + 4 * x)));
    });
}

template <int kBytes, int... kPart>
void CheckLoadWeights(const Comparison& compare) {
    compare("LoadWeights", []<class V>(const Bench& on, int x) {
        const auto lerp = [&]<int k>(int at) {
            V::Store(on.out + at, V::Lerp(V::Load(on.a + at), V::Load(on.b + at),
                                          V::template LoadWeights<kBytes, k>(on.c + x)));
        };
        (lerp.template operator()<kPart>(kBytes * x + kPart * V::kPixels), ...);
    });
}

template <int... kPart>
void CheckLoadWeightsOfX(const Comparison& compare) {
    compare("LoadWeightsOfX", []<class V>(const Bench& on, int x) {
        const auto lerp = [&]<int k>(int at) {
            V::Store(on.out + at, V::Lerp(V::Load(on.a + at), V::Load(on.b + at),
                                          V::template LoadWeightsOfX<k>(on.c + 4 * x)));
        };
        (lerp.template operator()<kPart>(4 * x + kPart * V::kPixels), ...);
    });
}

void CheckBytesAndPixels(const Comparison& compare) {
    compare("Load, Store",
            []<class V>(const Bench& on, int x) { V::Store(on.out + x, V::Load(on.a + x)); });
    compare("LoadEvens", []<class V>(const Bench& on, int x) {
        V::Store(on.out + x, V::LoadEvens(on.a + 2 * x));
    });
    compare("LoadPairs", []<class V>(const Bench& on, int x) {
        V::Store(on.out + x, V::LoadPairs(on.a + x / 2, on.b + x / 2));
    });
    compare("StorePairs", []<class V>(const Bench& on, int x) {
        V::StorePairs(on.out + x / 2, on.out + 256 + x / 2, V::Load(on.a + x));
    });
    compare("StoreInTurn", []<class V>(const Bench& on, int x) {
        V::StoreInTurn(on.out + 2 * x, V::Load(on.a + x), V::Load(on.b + x));
    });
    compare("LoadBgr, StoreBgrx", []<class V>(const Bench& on, int x) {
        V::StoreBgrx(on.out + 4 * x, V::LoadBgr(on.a + 3 * x));
    });
    compare("LoadBgrx, StoreBgr", []<class V>(const Bench& on, int x) {
        V::StoreBgr(on.out + 3 * x, V::LoadBgrx(on.a + 4 * x));
    });
    compare("StoreBgr of channels", []<class V>(const Bench& on, int x) {
        V::StoreBgr(on.out + 3 * x, V::Load(on.a + x), V::Load(on.b + x), V::Load(on.c + x));
    });
    compare("Evens, Odds", []<class V>(const Bench& on, int x) {
        const auto low = V::Load(on.a + 2 * x), high = V::Load(on.a + 2 * x + V::kPixels);
        V::Store(on.out + x, V::Evens(low, high));
        V::Store(on.out + 256 + x, V::Odds(low, high));
    });
    compare("Average", []<class V>(const Bench& on, int x) {
        V::Store(on.out + x, V::Average(V::Load(on.a + x), V::Load(on.b + x)));
    });
    compare("WeightsOf, Lerp", []<class V>(const Bench& on, int x) {
        V::Store(on.out + x,
                 V::Lerp(V::Load(on.a + x), V::Load(on.b + x), V::WeightsOf(V::Load(on.c + x))));
    });
    CheckLoadWeights<1, 0>(compare);
    CheckLoadWeights<2, 0, 1>(compare);
    CheckLoadWeights<3, 0, 1, 2>(compare);
    CheckLoadWeights<4, 0, 1, 2, 3>(compare);
    CheckLoadWeightsOfX<0, 1, 2, 3>(compare);
    compare("Reverse of bytes", []<class V>(const Bench& on, int x) {
        V::Store(on.out + 256 - x - V::kPixels, V::Reverse(V::Load(on.a + x)));
    });
    compare("Reverse of pixels", []<class V>(const Bench& on, int x) {
        V::StoreBgrx(on.out + 4 * (128 - x - V::kPixels), V::Reverse(V::LoadBgrx(on.a + 4 * x)));
    });
    compare("LoadBackward, StoreBackward", []<class V>(const Bench& on, int x) {
        V::StoreBackward(on.out + 3 * (128 - x - V::kPixels), V::LoadBackward(on.a + 3 * x));
    });
    compare("ReverseYuy2", []<class V>(const Bench& on, int x) {
        V::StoreBgrx(on.out + 4 * (128 - x - V::kPixels),
                     V::ReverseYuy2(V::LoadBgrx(on.a + 4 * x)));
    });
    CheckTakeByte<0>(compare), CheckTakeByte<1>(compare);
    CheckTakeByte<2>(compare), CheckTakeByte<3>(compare);
}

// Below 0, within bytes, and above.
template <class C, class Lanes>
PXB_INLINE Lanes Stretched(Lanes a) {
    return C::template ShiftRight<1>(C::Sub(C::AddSaturated(C::Add(a, a), a), C::Set(200)));
}

template <int kBytesPerPixel>
void CheckToRgb(const Comparison& compare) {
    compare("LoadLuma, LoadUv, Join, Store", []<class V>(const Bench& on, int x) {
        using C = ToRgb<V, kBytesPerPixel>;
        const auto luma = C::LoadLuma(on.a + x);
        const auto uv = C::LoadUv(on.b + x / 2, on.c + x / 2), pairs = C::LoadUv(on.b + x);
        const auto even = C::MulEven(luma, C::Factor(74)), odd = C::MulOdd(luma, C::Factor(1));
        const auto u = C::Weigh(uv, C::FactorU(129)), v = C::Weigh(pairs, C::FactorV(102));
        const auto both = C::Weigh(uv, C::FactorUv(25, 52));
        C::Store(on.out + kBytesPerPixel * x, C::Join(Stretched<C>(odd), odd),
                 C::Join(C::template ShiftRight<6>(C::AddSaturated(even, u)),
                         C::template ShiftRight<6>(C::Sub(even, both))),
                 C::Join(C::template ShiftRight<6>(v), odd));
    });
    compare("LoadYuy2, Narrow, Store", []<class V>(const Bench& on, int x) {
        using C = ToRgb<V, kBytesPerPixel>;
        const auto yuy2 = C::LoadYuy2(on.a + 2 * x);
        const auto low = C::MulEven(yuy2.low, C::Factor(1));
        const auto high = C::MulEven(yuy2.high, C::Factor(1));
        const auto weighed = [&](auto weights) PXB_INLINE_LAMBDA {
            return C::Narrow(C::Weigh(yuy2.uv_low, weights), C::Weigh(yuy2.uv_high, weights));
        };
        C::Store(on.out + kBytesPerPixel * x, C::Narrow(Stretched<C>(low), Stretched<C>(high)),
                 weighed(C::FactorU(1)), weighed(C::FactorUv(1, 2)));
    });
}

template <int kBytesPerPixel>
void CheckToYuv(const Comparison& compare) {
    compare("Weigh, WeighPairs, PairUp, Store, StorePairs", []<class V>(const Bench& on, int x) {
        using C = ToYuv<V>;
        const auto top = C::template Load<kBytesPerPixel>(on.a + kBytesPerPixel * x);
        const auto bottom = C::template Load<kBytesPerPixel>(on.b + kBytesPerPixel * x);
        const auto pairs = C::PairUp(C::template WeighPairs<56, -37, -19>(top, bottom),
                                     C::template WeighPairs<-9, -47, 56>(top, bottom));
        C::Store(on.out + x, C::template Weigh<25, 129, 66, 16>(bottom));
        C::Store(on.out + 128 + x, pairs);
        C::StorePairs(on.out + 256 + x / 2, on.out + 384 + x / 2, pairs);
    });
    compare("WeighPairs of a row, StoreYuy2", []<class V>(const Bench& on, int x) {
        using C = ToYuv<V>;
        const auto rgb = C::template Load<kBytesPerPixel>(on.a + kBytesPerPixel * x);
        C::StoreYuy2(on.out + 2 * x, C::template Weigh<28, 151, 77, 0>(rgb),
                     C::PairUp(C::template WeighPairs<56, -37, -19>(rgb),
                               C::template WeighPairs<-9, -47, 56>(rgb)));
    });
}

void CheckAyuv(const Comparison& compare) {
    compare("LoadAyuv, StoreBgra", []<class V>(const Bench& on, int x) {
        using C = ToRgb<V, 4>;
        struct Channels {
            typename C::Lanes blue, green, red;
        };
        const auto ayuv = C::LoadAyuv(on.a + 4 * x);
        const auto channels = [](auto samples, auto uv) PXB_INLINE_LAMBDA {
            return Channels{Stretched<C>(C::MulOdd(samples, C::Factor(1))),
                            C::Weigh(uv, C::FactorU(1)), C::Weigh(uv, C::FactorV(2))};
        };
        C::StoreBgra(on.out + 4 * x, channels(ayuv.low, ayuv.uv_low),
                     channels(ayuv.high, ayuv.uv_high), ayuv);
    });
    compare("WeighEach, StoreAyuv", []<class V>(const Bench& on, int x) {
        using C = ToYuv<V>;
        const auto pixels = V::LoadBgrx(on.a + 4 * x);
        C::template StoreAyuv<16>(on.out + 4 * x, pixels,
                                  C::template WeighEach<25, 129, 66>(pixels),
                                  C::template WeighEach<112, -74, -38>(pixels),
                                  C::template WeighEach<-18, -94, 112>(pixels));
    });
}

}  // namespace

void CheckVocabulary(const Byte* noise, void (*differs)(const char* name, int pixels)) {
    const Comparison compare(noise, differs);
    CheckBytesAndPixels(compare);
    CheckToRgb<3>(compare);
    CheckToRgb<4>(compare);
    CheckToYuv<3>(compare);
    CheckToYuv<4>(compare);
    CheckAyuv(compare);
}

}  // namespace pxb::PXB_TARGET
