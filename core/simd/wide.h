// PXB_WIDTHS: the register classes of the instruction set that a kernel file is being compiled for,
// widest first; the last is Pair, two pixels in plain integers. All offer the same operations.
// `Bytes` holds kPixels samples, `Words` half as many signed 16-bit lanes, and `Pixels` kPixels
// 32-bit lanes B G R X.
//
// Set(n) Factor(n)           n in every lane of Words. Factor hides the value from the optimiser
//                            where that turns products into shifts and adds
// Load                       kPixels bytes, in order
// LoadFor<n>                 kPixels bytes,
// LoadPairsFor<n>            kPixels / 2 bytes of U and of V as bytes U V U V ...,
// LoadYuy2For<n>             kPixels pixels Y0 U Y1 V, with u and v for each pixel: on their way to
//                            a store of n bytes a pixel that may want an order of its own (n = 0:
//                            none), see Join and Narrow
// UvOf(pairs)                u and v of bytes U V U V ...
// LoadBgr LoadBgrx           kPixels pixels of 3 bytes (X becomes 0) or of 4
// LoadRgb<n>                 kPixels pixels of n bytes, for weighing
// Store StorePairs StoreYuy2 Bytes; the two planes of U V U V; luma and U V U V as Y0 U Y1 V
// StoreBgr StoreBgrx         Pixels, as pixels of 3 bytes or of 4
// StoreBgr StoreBgr0         B, G, R from Join, Narrow or Load, as pixels of 3 bytes, or of 4 with
//                            X = 0
// FactorU FactorV FactorUv   weights of u = U - 128 and v = V - 128, each 0 to 255
// Weigh(uv, weights)         their weighted sum, a Words
// MulEven MulOdd             every second byte of Bytes times Words, 0 to 127
// Join<n>(even, odd)         Words to samples clamped to 0..255, for a store of n bytes a pixel;
//                            undoes MulEven, MulOdd
// Narrow<n>(low, high)       the same, for the two halves of a LoadYuy2For
// Evens(a, b) Odds(a, b)     every second byte of both
// Average                    (a + b + 1) / 2 of bytes
// WeighBgr<b, g, r, offset>  ((b B + g G + r R) >> 8) + offset; the weights sum to 256 at most
// WeighPairs<b, g, r>        (b B + g G + r R) summed over two neighbours, or those of two rows
// PairUp(u, v)               such sums >> 8 (two rows: >> 9), 128 added, as bytes U V U V ...
// NarrowByte<k>              byte k of each lane of Pixels
// Add Sub AddSaturated       on Words
// ShiftRight<n>              on Words, arithmetic
// kStreams                   whether its stores go around the caches, see memory.h
// Leave                      after the last row: stores become visible to other threads, and MMX
//                            hands the floating-point registers back
//
// No operation touches memory outside its pixels.
#pragma once
#include "core/simd/pair.h"

#if defined(PXB_TARGET_MMX)
#include "core/simd/mmx.h"
#define PXB_WIDTHS Mmx, Pair
#elif defined(PXB_TARGET_SSE2)
#include "core/simd/sse2.h"
#define PXB_WIDTHS Sse2, Pair
#elif defined(PXB_TARGET_AVX2)
#include "core/simd/avx2.h"
#define PXB_WIDTHS Avx2<Stores::kStreamed>, Avx2<Stores::kCached>, Pair
#elif defined(PXB_TARGET_AVX512)
#include "core/simd/avx2.h"
#include "core/simd/avx512.h"
#define PXB_WIDTHS Avx512<Stores::kStreamed>, Avx512<Stores::kCached>, Avx2<Stores::kCached>, Pair
#elif defined(PXB_TARGET_PAIRWISE)
#define PXB_WIDTHS Pair
#endif
