// Calls a conversion as old 32-bit programs do: they keep the stack at 4 bytes only, and compute
// with x87 registers, which share their place with those of MMX.
#pragma once
#include <PxbLib.h>

struct CallOutcome {
    int32_t result;
    bool x87_is_empty;  // no register left in use, so that the caller's arithmetic goes on
};

// `misalignment`: 0, 4, 8 or 12, the stack's distance from a multiple of 16 bytes. 64-bit callers
// always keep it at 0.
CallOutcome ConvertAsOldCaller(ImageBuffer* dst, const ImageBuffer* src, int misalignment);
