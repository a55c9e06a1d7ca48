#include "transform/bilinear_row.h"

#include <algorithm>

namespace pxb {
namespace {

int Between(int a, int b, int weight) {
    return a + (((b - a) * weight) >> 8);
}

template <int kSourceBytes, int kBytes>
void Interpolate(Byte* dst, FixedPoint at, FixedPoint step, const SourceRowTable& source,
                 std::ptrdiff_t count) {
    constexpr int kShared = std::min(kSourceBytes, kBytes);
    for (; count > 0; --count, dst += kBytes, at.u += step.u, at.v += step.v) {
        const std::int64_t q = at.u >> 16, r = at.v >> 16;
        const int u_weight = at.u >> 8 & 0xFF, v_weight = at.v >> 8 & 0xFF;
        const Byte* const top = source.data + source.RowOffset(r);
        const Byte* const bottom = source.data + source.RowOffset(r + 1);
        const std::ptrdiff_t left = source.ColumnOffset(q), right = source.ColumnOffset(q + 1);
        for (int k = 0; k < kShared; ++k) {
            const int above = Between(top[left + k], top[right + k], u_weight);
            const int below = Between(bottom[left + k], bottom[right + k], u_weight);
            dst[k] = static_cast<Byte>(Between(above, below, v_weight));
        }
        if (kBytes > kShared) dst[kShared] = 0;
    }
}

}  // namespace

namespace plain {

void BilinearRowKernel(Byte* dst, FixedPoint at, FixedPoint step, const SourceRowTable& source,
                       std::ptrdiff_t count) {
    if (source.bytes_per_pixel == 3) return Interpolate<3, 3>(dst, at, step, source, count);
    Interpolate<4, 4>(dst, at, step, source, count);
}

}  // namespace plain

void BilinearRow24To32(Byte* dst, FixedPoint at, FixedPoint step, const SourceRowTable& source,
                       std::ptrdiff_t count) {
    Interpolate<3, 4>(dst, at, step, source, count);
}

void BilinearRow32To24(Byte* dst, FixedPoint at, FixedPoint step, const SourceRowTable& source,
                       std::ptrdiff_t count) {
    Interpolate<4, 3>(dst, at, step, source, count);
}

}  // namespace pxb
