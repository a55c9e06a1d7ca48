// How the bytes of a destination row are made of those of a source row. A pixel layout is nothing
// but a way of listing them: 8-, 24- and 32-bit pixels and packed 4:2:2 all meet here.
#pragma once
#include <cstddef>
#include <cstdint>

#include "scale/source_table.h"

namespace pxb {

// One byte of a destination group. Its samples stand `unit` bytes apart in the source, the first of
// the row at `channel`. Their points are those of table `table`: `each` of them belong to a group,
// and this byte takes the `nth`.
struct ByteOfGroup {
    Byte table, each, nth, unit;
    std::int16_t channel;
};

// Always 0: the byte before the row, whatever the point.
constexpr ByteOfGroup kZeroByte = {0, 1, 0, 0, -1};

struct PixelLayout {
    Byte group_bytes;  // of the destination
    bool has_zero_byte;
    ByteOfGroup bytes[4];
};

struct Column {
    std::ptrdiff_t first;  // offset of the first byte; negative: before the row, see SourcePoint
    std::ptrdiff_t unit;   // from one sample to the next
    const Byte* weight;    // as SourcePoint says
};

// Visits the bytes of a destination row in order, from any one on.
class ColumnWalk {
  public:
    PXB_INLINE ColumnWalk(const PixelLayout& layout, const SourcePoint* const* tables,
                          std::ptrdiff_t from)
        : layout_(layout),
          tables_(tables),
          group_(from / layout.group_bytes),
          byte_(from % layout.group_bytes) {}

    PXB_INLINE Column Next() {
        const ByteOfGroup& byte = layout_.bytes[byte_];
        const SourcePoint& point = tables_[byte.table][group_ * byte.each + byte.nth];
        if (++byte_ == layout_.group_bytes) byte_ = 0, ++group_;
        return {std::ptrdiff_t{point.first} * byte.unit + byte.channel, byte.unit, point.weight};
    }

  private:
    const PixelLayout& layout_;
    const SourcePoint* const* tables_;
    std::ptrdiff_t group_, byte_;
};

}  // namespace pxb
