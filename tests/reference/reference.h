// A second opinion on every conversion, for comparison with the library. Written apart from its
// kernels and in another shape: any layout is a set of strided samples, addressed one by one in
// 64-bit integers.
#pragma once
#include <PxbLib.h>

// What the library makes of the processor, as far as callers can see it in the bytes.
enum class Processor {
    kPlain,
    kMmx,
    kSse2
};

// Writes into dst what PxbColorSpaceConv(&dst, &src) must write there. The formats must be a pair
// that converts, or YUY2 to NV12 or AYUV32 (without alpha), so that tests can make such images.
void ConvertByReference(const ImageBuffer& dst, const ImageBuffer& src, Processor processor);
