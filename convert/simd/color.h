// What YUV and RGB kernels need of a register class V beyond core/simd/wide.h.
//
// ToRgb<V, n> is for the way from YUV to pixels of n bytes (3 or 4). `Samples` are bytes, `Lanes`
// signed 16-bit lanes, half as many, and `Uv` u = U - 128 and v = V - 128 for as many lanes, all in
// an order of their own that Store undoes.
//
// Set(k) Factor(k)           k in every lane
// FactorU FactorV FactorUv   weights of u and v, each 0 to 255
// LoadLuma                   kPixels bytes, as Samples
// LoadUv(u, v) LoadUv(uv)    chroma of kPixels / 2 pairs, from two planes or from bytes U V U V ...
// LoadYuy2                   kPixels pixels Y0 U Y1 V as Packed: two halves `low`, `high` with luma
//                            in the even bytes, and u and v of each pixel
// LoadAyuv                   the same of pixels A Y U V; alpha in the even bytes, luma in the odd
// Weigh(uv, weights)         their weighted sum
// MulEven MulOdd             every second byte of Samples times a factor of 0 to 127
// Add Sub AddSaturated ShiftRight<k>  on Lanes
// Join(even, odd)            Lanes to samples clamped to 0..255; undoes MulEven, MulOdd
// Narrow(low, high)          the same, for the two halves of LoadYuy2
// Store(dst, b, g, r)        what Join or Narrow gave, as pixels; X is 0
// StoreBgra(dst, low, high, ayuv)     {blue, green, red} of the halves of LoadAyuv, with its alpha
//
// ToYuv<V> is for the way from RGB to YUV.
//
// Load<n>                    kPixels pixels of n bytes
// Weigh<b, g, r, offset>     ((b B + g G + r R) >> 8) + offset; the weights sum to 256 at most
// WeighPairs<b, g, r>        (b B + g G + r R) summed over two neighbours, or those of two rows
// PairUp(u, v)               such sums >> 8 (two rows: >> 9), 128 added, as bytes U V U V ...
// Store StorePairs StoreYuy2 what Weigh and PairUp gave: as bytes; as two planes; as Y0 U Y1 V
// WeighEach<b, g, r>         b B + g G + r R of each lane of Pixels, modulo 2^16
// StoreAyuv<offset>(dst, pixels, y, u, v)  pixels A Y U V: A is X, the others are such sums >> 8, with
//                            the offset added to Y and 128 to U and V
//
// What reads alike in several classes is in lanes.h.
#pragma once
#include "convert/simd/scalar.h"
#include "core/simd/writer.h"

#if defined(PXB_TARGET_MMX) || defined(PXB_TARGET_SSE2)
#include "convert/simd/block.h"
#elif defined(PXB_TARGET_AVX2)
#include "convert/simd/avx2.h"
#include "convert/simd/block.h"
#elif defined(PXB_TARGET_AVX512)
#include "convert/simd/avx2.h"
#include "convert/simd/avx512.h"
#include "convert/simd/block.h"
#endif
