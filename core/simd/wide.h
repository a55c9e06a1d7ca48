// Wide: the widest registers of the instruction set that a kernel file is being compiled for; Pair:
// two pixels in plain integers, which finish each row with the same arithmetic. Both offer the same
// operations. `Bytes` holds kPixels samples, `Words` half as many signed 16-bit lanes, and `Pixels`
// kPixels 32-bit lanes B G R X.
//
// Set(n) Factor(n)           n in every lane of Words. Factor hides the value from the optimiser,
//                            which otherwise turns products into shifts and adds
// Load LoadPairs             kPixels bytes; kPixels / 2 bytes of U and of V, as bytes U V U V ...
// LoadFor<n> LoadYuy2For<n>  kPixels bytes; kPixels pixels Y0 U Y1 V, with u and v for each pixel:
// UvFor<n>(pairs)            u and v of each pair. On their way to a store of n bytes a pixel, which
//                            may want lanes in an order of its own
// LoadBgr LoadBgrx           kPixels pixels of 3 bytes (X becomes 0) or of 4
// LoadRgb<n>                 kPixels pixels of n bytes, for weighing
// Store StorePairs StoreYuy2 Bytes; the two planes of U V U V; luma and U V U V as Y0 U Y1 V
// StoreBgr StoreBgrx         Pixels, as pixels of 3 bytes or of 4
// StoreBgr StoreBgr0         three Bytes B, G, R, as pixels of 3 bytes, or of 4 with X = 0
// FactorU FactorV FactorUv   weights of u = U - 128 and v = V - 128, each 0 to 255
// Weigh(uv, weights)         their weighted sum, a Words
// MulEven MulOdd             every second byte of Bytes times Words, 0 to 127
// Join(even, odd)            Words to Bytes, clamped to 0..255; undoes MulEven, MulOdd
// Narrow(low, high)          the same, for the two halves of a LoadYuy2For
// Evens(a, b) Odds(a, b)     every second byte of both
// Average                    (a + b + 1) / 2 of bytes
// WeighBgr<b, g, r, offset>  ((b B + g G + r R) >> 8) + offset; the weights sum to 256 at most
// WeighPairs<b, g, r>        (b B + g G + r R) summed over two neighbours, or over those of two rows
// PairUp(u, v)               such sums >> 8 (two rows: >> 9), 128 added, as bytes U V U V ...
// NarrowByte<k>              byte k of each lane of Pixels
// Add Sub AddSaturated       on Words
// ShiftRight<n>              on Words, arithmetic
// Leave                      at the end of each kernel: MMX hands the floating-point registers back
//
// No operation touches memory outside its pixels.
#pragma once

#include "core/simd/pair.h"

#if defined(PXB_TARGET_MMX)
#include "core/simd/mmx.h"
#elif defined(PXB_TARGET_SSE2)
#include "core/simd/sse2.h"
#elif defined(PXB_TARGET_AVX2)
#include "core/simd/avx2.h"
#elif defined(PXB_TARGET_PAIRWISE)
namespace pxb::PXB_TARGET {
using Wide = Pair;
}
#endif
