#include "core/copy.h"

namespace pxb {
namespace {

void CopyBytes(Byte* dst, const Byte* src, std::size_t bytes) {
    Byte* to = dst;
    __asm__ volatile("rep movsb" : "+D"(to), "+S"(src), "+c"(bytes) : : "memory");
}

}  // namespace

void CopyRows(Byte* dst, std::int32_t dst_stride, const Byte* src, std::int32_t src_stride,
              std::ptrdiff_t row_bytes, std::int32_t height) {
    if (row_bytes <= 0) return;
    const bool tight = dst_stride == row_bytes && src_stride == row_bytes && height > 0;
    if (tight) return CopyBytes(dst, src, static_cast<std::size_t>(row_bytes * height));
    ForRows(dst, dst_stride, src, src_stride, height, [=](Byte* to, const Byte* from) {
        CopyBytes(to, from, static_cast<std::size_t>(row_bytes));
    });
}

}  // namespace pxb
