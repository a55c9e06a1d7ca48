// Mirrors in plain code.
#include "transform/mirrors.h"

#include <algorithm>
#include <cstdlib>

namespace pxb {
namespace {

template <int kBytes>
void MirrorRows(Byte* first, std::ptrdiff_t stride, std::int32_t width, std::int32_t height) {
    for (Rows row(first, stride); height > 0; --height, row.Next()) {
        Byte* left = row[0];
        Byte* right = left + std::ptrdiff_t{kBytes} * (width - 1);
        for (; left < right; left += kBytes, right -= kBytes)
            std::swap_ranges(left, left + kBytes, right);
    }
}

// step(row i, row height - 1 - i) for each pair of different rows.
template <class Step>
void ForOppositeRows(Byte* first, std::ptrdiff_t stride, std::int32_t height, const Step& step) {
    Byte* last = first + (height - 1) * stride;
    for (std::int32_t pairs = height / 2; pairs > 0; --pairs, first += stride, last -= stride)
        step(first, last);
}

}  // namespace

void ExchangeOverlappingRows(Byte* first, std::ptrdiff_t stride, std::ptrdiff_t row_bytes,
                             std::int32_t height) {
    ForOppositeRows(first, stride, height, [=](Byte* row, const Byte* opposite) {
        // Bytes of both rows that are this far apart form chains. Each takes over the byte before it,
        // and the first one, which has none, the byte behind it.
        const std::ptrdiff_t distance = opposite - row, step = std::abs(distance);
        const int ahead = distance > 0 ? 1 : -1;
        Byte* const end = ahead > 0 ? row : row + row_bytes - 1;
        for (std::ptrdiff_t begin = 0; begin < std::min(step, row_bytes); ++begin) {
            Byte* at = end + ahead * begin;
            Byte carried = *at;
            *at = at[distance];
            for (std::ptrdiff_t i = begin; i < row_bytes; i += step)
                std::swap(*(at += distance), carried);
        }
    });
}

namespace plain {

void MirrorPixels(Byte* first, std::ptrdiff_t stride, std::int32_t width, std::int32_t height,
                  int bytes_per_pixel) {
    switch (bytes_per_pixel) {
        case 1:
            return MirrorRows<1>(first, stride, width, height);
        case 3:
            return MirrorRows<3>(first, stride, width, height);
        default:
            return MirrorRows<4>(first, stride, width, height);
    }
}

void MirrorYuy2(Byte* first, std::ptrdiff_t stride, std::int32_t width, std::int32_t height) {
    for (Rows row(first, stride); height > 0; --height, row.Next()) {
        Byte* left = row[0];
        Byte* right = left + std::ptrdiff_t{2} * width - 4;
        for (; left < right; left += 4, right -= 4) {
            std::swap(left[0], right[2]);
            std::swap(left[1], right[1]);
            std::swap(left[2], right[0]);
            std::swap(left[3], right[3]);
        }
    }
}

void ExchangeRows(Byte* first, std::ptrdiff_t stride, std::ptrdiff_t row_bytes,
                  std::int32_t height) {
    ForOppositeRows(first, stride, height, [=](Byte* row, Byte* opposite) {
        std::swap_ranges(row, row + row_bytes, opposite);
    });
}

}  // namespace plain
}  // namespace pxb
