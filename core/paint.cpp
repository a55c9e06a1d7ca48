#include "core/paint.h"

#include <algorithm>
#include <cstring>

#include "core/copy.h"

namespace pxb {
namespace {

// The string store: memset has no form for words.
void PaintWords(std::uint8_t* dst, std::uint32_t word, std::size_t count) {
    std::uint8_t* to = dst;
    __asm__ volatile("rep stosl" : "+D"(to), "+c"(count) : "a"(word) : "memory");
}

// Patterns that no word holds: the run grows by copies of its own beginning, first by all of it,
// later by a piece that stays in the first cache, or in the second one where the run itself does
// not.
void PaintByCopies(std::uint8_t* dst, const Pattern& pattern, std::size_t bytes) {
    // Whole patterns and cache lines, but no whole pages: a copy reads slowly what lies any number
    // of pages before the bytes it has just written.
    constexpr std::size_t kSmallPiece = 127 * 3 * 64, kLargePiece = 1023 * 3 * 64;
    constexpr std::size_t kSecondCache = 1 << 20;
    const std::size_t largest_piece = bytes < kSecondCache ? kSmallPiece : kLargePiece;
    std::size_t done = std::min(bytes, static_cast<std::size_t>(pattern.size));
    std::memcpy(dst, pattern.bytes, done);
    while (done < bytes) {
        const std::size_t piece = std::min({done, bytes - done, largest_piece});
        CopyBytes(dst + done, dst, piece);
        done += piece;
    }
}

void PaintRun(std::uint8_t* dst, const Pattern& pattern, std::size_t count) {
    switch (pattern.size) {
        case 1:
            std::memset(dst, pattern.bytes[0], count);
            break;
        case 4: {
            std::uint32_t word;
            std::memcpy(&word, pattern.bytes, sizeof word);
            PaintWords(dst, word, count);
            break;
        }
        default:
            PaintByCopies(dst, pattern, count * static_cast<std::size_t>(pattern.size));
    }
}

// Up to here a copy of the first row, which stays in the first cache, is faster than another run,
// which takes 10 to 60 ns to begin (AMD EPYC, Zen 3). memset has no such start, unless compilers
// for 32 bits replace it by the string store.
constexpr std::size_t LongestCopiedRow(int pattern_size) {
    if (pattern_size == 3) return 8192;
    return pattern_size == 4 || sizeof(void*) == 4 ? 1536 : 0;
}

}  // namespace

void PaintRows(std::uint8_t* data, std::int32_t stride, const Pattern& pattern, std::int32_t count,
               std::int32_t height) {
    const auto columns = static_cast<std::size_t>(count), rows = static_cast<std::size_t>(height);
    const bool tight = stride == static_cast<std::int64_t>(count) * pattern.size;
    if (tight) return PaintRun(data, pattern, columns * rows);
    const std::size_t row_bytes = columns * static_cast<std::size_t>(pattern.size);
    const bool by_copies = row_bytes <= LongestCopiedRow(pattern.size);
    for (std::size_t y = 0; y < rows; ++y) {
        std::uint8_t* const row = data + static_cast<std::ptrdiff_t>(y) * stride;
        if (by_copies && y > 0)
            CopyBytes(row, data, row_bytes);
        else
            PaintRun(row, pattern, columns);
    }
}

void PaintPlane(std::uint8_t* data, std::uint8_t value, std::int64_t bytes) {
    std::memset(data, value, static_cast<std::size_t>(bytes));
}

}  // namespace pxb
