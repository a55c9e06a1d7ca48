// Where the weights of packed pixels come from: an order for byte shuffles.
#pragma once
#include "core/byte.h"

namespace pxb::PXB_TARGET {

// The words 256 w for one half (0 low, 1 high) of the bytes in each block of 16, as unpacking deals
// them. The bytes are part kPart of pixels of kBytes bytes, in registers of kRegisterBytes. Byte i of
// the words is the weight of pixel At(i), or 0 where that is below 0: the low byte of each word, and
// the weight of a fourth byte.
template <int kBytes, int kPart, int kHalf, int kRegisterBytes>
struct WeightOrder {
    static constexpr PXB_INLINE int At(int i) {
        const int byte = kPart * kRegisterBytes + i / 16 * 16 + kHalf * 8 + i % 16 / 2;
        return i % 2 == 0 || (kBytes == 4 && byte % 4 == 3) ? -128 : byte / kBytes;
    }
};

// The same inside a block of four pixels whose fourth bytes are the weights.
template <int kHalf>
struct WeightOfXOrder {
    static constexpr PXB_INLINE int At(int i) {
        const int pixel = WeightOrder<4, 0, kHalf, 16>::At(i);
        return pixel < 0 ? pixel : 4 * pixel + 3;
    }
};

}  // namespace pxb::PXB_TARGET
