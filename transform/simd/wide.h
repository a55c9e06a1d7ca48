// PXB_TURN_WIDTHS: the register classes that turned images are written with, widest first. All
// offer the same operations, in blocks of 16 bytes.
//
// kBlocks                    16-byte blocks in a register
// LoadBlocks(src, step)      16 bytes from each of kBlocks places
// LoadBgrBlocks<early>       4 pixels of 3 bytes from each place, as lanes B G R X. Reads 16 bytes,
//                            the 12 of the pixels first or, if early, last
// StoreBgr<loosely>          4 kBlocks lanes, as pixels of 3 bytes; loosely: up to kLoose pixels
//                            behind them become anything
// Zip8 Zip32                 bytes (lanes) of the lower or upper halves of blocks, in turn
// Reversed ReversedLanes     all bytes (32-bit lanes) in reverse order
// JustBelow(a, b)            of bytes: b, but one less where it is above a
//
// A warp takes kPixels = 4 kBlocks pixels in two registers j = 0, 1 of 64-bit elements: block l of
// register j holds pixels 4 l + 2 j and the next, so that packing both gives the natural order.
//
// Point(u, v)                every element is u, v
// Offsets(a, b, scale)       of points in 16.16, in natural order
// LoadPairs                  two neighbouring pixels from each offset
// Taps<bytes>                of pairs, as words: the first pixel, and twice the way to the second
// Weights<k>(a)              word k of each element, four times
#pragma once
#include "core/rows.h"

#if defined(PXB_TARGET_SSE2)
#include "transform/simd/sse2.h"
#define PXB_TURN_WIDTHS Sse2Turns
#elif defined(PXB_TARGET_AVX2)
#include "transform/simd/avx2.h"
#define PXB_TURN_WIDTHS Avx2Turns, Sse2Turns
#elif defined(PXB_TARGET_AVX512)
#include "transform/simd/avx512.h"
#define PXB_TURN_WIDTHS Avx512Turns, Avx2Turns, Sse2Turns
#endif
