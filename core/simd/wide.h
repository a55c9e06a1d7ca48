// PXB_WIDTHS: the register classes of the instruction set that a kernel file is being compiled for,
// widest first; the last are Scalar<2> and Scalar<1>, plain integers. All offer the same operations
// on bytes and pixels in the order of memory. A value in any other order has a type of its own, of
// the class that brought it there, and only operations that know the order take it.
//
// `Bytes` holds kPixels bytes and `Pixels` kPixels 32-bit lanes B G R X. What colour arithmetic needs
// on top is in convert/simd/color.h.
//
// `Weights` are numbers 0 to 255, one for each of kPixels bytes, in the form that Lerp wants.
//
// Load                       kPixels bytes
// LoadEvens                  every second byte of 2 kPixels - 1
// LoadPairs(a, b)            kPixels / 2 bytes of each, as bytes A B A B ...
// LoadBgr LoadBgrx           Pixels of 3 bytes (X becomes 0) or of 4
// Store                      Bytes
// StorePairs(a, b, bytes)    bytes A B A B ... to two places
// StoreInTurn(dst, a, b)     2 kPixels bytes A B A B ...
// StoreBgr StoreBgrx         Pixels, as pixels of 3 bytes or of 4
// StoreBgr(dst, b, g, r)     Bytes of three channels, as pixels of 3 bytes
// Evens(a, b) Odds(a, b)     every second byte of both
// Average                    (a + b + 1) / 2 of bytes
// WeightsOf(bytes)           each byte as a weight
// LoadWeights<n, part>       of kPixels bytes, each for the n bytes of a pixel (n = 4: the fourth gets
//                            0); those for bytes part * kPixels and on
// LoadWeightsOfX<part>       the same of pixels B G R X, whose X is the weight
// Lerp(a, b, weights)        ((256 - w) a + w b) >> 8 of bytes, as a + floor(w (b - a) / 256)
// TakeByte<k>                byte k of each lane of Pixels
// Reverse                    the last of Bytes or Pixels first
// ReverseYuy2                Pixels, each of them a group Y0 U Y1 V: the last first, as Y1 U Y0 V
// LoadBackward StoreBackward pixels of 3 bytes, the last first, in whatever order suits both
// kStreams                   whether its stores go around the caches, see memory.h
// Leave                      after the last row: stores become visible to other threads, and MMX
//                            hands the floating-point registers back
//
// Of what works on pairs, Scalar<1> has Evens and Odds alone. No operation touches memory outside its
// pixels.
#pragma once
#include "core/simd/scalar.h"

#if defined(PXB_TARGET_MMX)
#include "core/simd/mmx.h"
#define PXB_WIDTHS Mmx, Scalar<2>, Scalar<1>
#elif defined(PXB_TARGET_SSE2)
#include "core/simd/sse2.h"
#define PXB_WIDTHS Sse2, Scalar<2>, Scalar<1>
#elif defined(PXB_TARGET_AVX2)
#include "core/simd/avx2.h"
#include "core/simd/sse2.h"
#define PXB_WIDTHS Avx2<Stores::kStreamed>, Avx2<Stores::kCached>, Sse2, Scalar<2>, Scalar<1>
#elif defined(PXB_TARGET_AVX512)
#include "core/simd/avx2.h"
#include "core/simd/avx512.h"
#include "core/simd/sse2.h"
#define PXB_WIDTHS                                                                              \
    Avx512<Stores::kStreamed>, Avx512<Stores::kCached>, Avx2<Stores::kCached>, Sse2, Scalar<2>, \
        Scalar<1>
#elif defined(PXB_TARGET_PAIRWISE)
#define PXB_WIDTHS Scalar<2>, Scalar<1>
#endif
