// Turns in registers. Quarter turns go by tiles of a few rows that are transposed; what remains at
// the right and at the bottom is done by tiles that reach back over pixels already written.
#include "transform/turns.h"

#include <utility>

#include "transform/simd/wide.h"

namespace pxb::PXB_TARGET {
namespace {

// kSize rows in each block, of kSize pixels that fill the block: 4 of 32 bits or 16 of 8.
template <class V, int kSize>
struct Square {
    typename V::Register row[kSize];
};

template <class V, int kSize, int... i>
PXB_INLINE Square<V, kSize> ZipHalves(const Square<V, kSize>& a, std::integer_sequence<int, i...>) {
    const auto zip = [&](int k, auto high) PXB_INLINE_LAMBDA {
        constexpr bool kHigh = decltype(high)::value;
        if constexpr (kSize == 16)
            return V::template Zip8<kHigh>(a.row[k], a.row[k + kSize / 2]);
        else
            return V::template Zip32<kHigh>(a.row[k], a.row[k + kSize / 2]);
    };
    return {{zip(i / 2, std::integral_constant<bool, i % 2>())...}};
}

// Each zip of the upper with the lower half of the rows turns the bits of all positions by one.
template <class V, int kSize>
PXB_INLINE Square<V, kSize> Transposed(const Square<V, kSize>& a) {
    constexpr auto kRows = std::make_integer_sequence<int, kSize>();
    const Square<V, kSize> b = ZipHalves(ZipHalves(a, kRows), kRows);
    if constexpr (kSize == 4)
        return b;
    else
        return ZipHalves(ZipHalves(b, kRows), kRows);
}

template <class V, int kBytes>
struct Tile {
    static constexpr int kSize = kBytes == 1 ? 16 : 4;
    // Two squares of 32-bit pixels, since each visit to a row of the source may fetch its line again
    // (AMD EPYC, Zen 3).
    static constexpr int kSquares = kBytes == 4 ? 2 : 1;
    static constexpr int kWidth = kSize * V::kBlocks, kHeight = kSize * kSquares;

    // kLoose: what follows the pixels of each row in the destination may be anything, up to V::kLoose
    // pixels, since it is still to be written.
    template <bool kEarly, bool kLoose>
    static PXB_INLINE void Turn(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                                std::ptrdiff_t x_step) {
        for (int k = 0; k < kHeight; k += kSize)
            TurnSquare<kEarly, kLoose>(dst + k * dst_stride, dst_stride, src + k * kBytes, x_step);
    }

  private:
    template <bool kEarly, bool kLoose>
    static PXB_INLINE void TurnSquare(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                                      std::ptrdiff_t x_step) {
        const auto turned =
            Transposed(LoadRows<kEarly>(src, x_step, std::make_integer_sequence<int, kSize>()));
        for (int k = 0; k < kSize; ++k) {
            if (kBytes == 3)
                V::template StoreBgr<kLoose>(dst + k * dst_stride, turned.row[k]);
            else
                V::StoreAll(dst + k * dst_stride, turned.row[k]);
        }
    }
    template <bool kEarly, int... i>
    static PXB_INLINE Square<V, kSize> LoadRows(const Byte* src, std::ptrdiff_t x_step,
                                                std::integer_sequence<int, i...>) {
        if constexpr (kBytes == 3)
            return {{V::template LoadBgrBlocks<kEarly>(src + i * x_step, kSize * x_step)...}};
        else
            return {{V::LoadBlocks(src + i * x_step, kSize * x_step)...}};
    }
};

// y_step is one pixel forward. False where the image is smaller than a tile.
template <class V, int kBytes>
PXB_INLINE bool TurnByTiles(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                            std::ptrdiff_t x_step, std::ptrdiff_t width, std::ptrdiff_t height) {
    using T = Tile<V, kBytes>;
    // Strips of several tiles, so that a line of the destination is written at once, and its page is
    // looked up once: narrow ones took up to three times as long (AMD EPYC, Zen 3). Lines of 3-byte
    // pixels straddle tiles, which rewards wider ones.
    constexpr std::ptrdiff_t kStrip = kBytes == 3 ? 256 : 128;
    // A tile of 3-byte pixels reads 16 bytes of each row, 4 too many: behind its pixels where two
    // more follow, before them at the end of the row.
    constexpr std::ptrdiff_t kBehind = kBytes == 3 ? 2 : 0;
    if (width < T::kWidth || height < T::kHeight + kBehind) return false;
    if (kBytes == 3 && V::kBlocks == 1) return false;  // plain code is as fast (AMD EPYC, Zen 3)
    for (std::ptrdiff_t left = 0; left < width; left += kStrip) {
        const std::ptrdiff_t right = left + kStrip < width ? left + kStrip : width;
        for (std::ptrdiff_t top = 0; top < height; top += T::kHeight) {
            const std::ptrdiff_t y = top + T::kHeight < height ? top : height - T::kHeight;
            for (std::ptrdiff_t column = left; column < right; column += T::kWidth) {
                const std::ptrdiff_t x = column + T::kWidth < width ? column : width - T::kWidth;
                Byte* const to = dst + y * dst_stride + x * kBytes;
                const Byte* const from = src + x * x_step + y * kBytes;
                const bool loose = x + T::kWidth + V::kLoose <= width;
                if (kBytes == 3 && y + T::kHeight + kBehind > height)
                    T::template Turn<true, false>(to, dst_stride, from, x_step);
                else if (kBytes == 3 && loose)
                    T::template Turn<false, true>(to, dst_stride, from, x_step);
                else
                    T::template Turn<false, false>(to, dst_stride, from, x_step);
            }
        }
    }
    return true;
}

template <int kBytes, class... V>
PXB_INLINE bool TurnInWidest(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                             std::ptrdiff_t x_step, std::ptrdiff_t y_step, std::ptrdiff_t width,
                             std::ptrdiff_t height) {
    if (y_step < 0) {
        dst += (height - 1) * dst_stride;
        src += (height - 1) * y_step;
        dst_stride = -dst_stride;
    }
    return (TurnByTiles<V, kBytes>(dst, dst_stride, src, x_step, width, height) || ...);
}

template <class... V>
PXB_INLINE bool ReverseInWidest(Byte* dst, const Byte* src, std::ptrdiff_t count) {
    const auto reverse = [&]<class Width>() PXB_INLINE_LAMBDA {
        constexpr std::ptrdiff_t kBytes = sizeof(typename Width::Register);
        if (count < kBytes) return false;
        for (std::ptrdiff_t i = 0; i < count; i += kBytes) {
            const std::ptrdiff_t at = i + kBytes < count ? i : count - kBytes;
            Width::StoreAll(dst + count - kBytes - at, Width::Reversed(Width::LoadAll(src + at)));
        }
        return true;
    };
    return (reverse.template operator()<V>() || ...);
}

}  // namespace

void TurnQuarter(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src, std::ptrdiff_t x_step,
                 std::ptrdiff_t y_step, std::int32_t width, std::int32_t height,
                 std::int32_t bytes) {
    const auto turn = [&]<int kBytes>(std::integral_constant<int, kBytes>) PXB_INLINE_LAMBDA {
        return TurnInWidest<kBytes, PXB_TURN_WIDTHS>(dst, dst_stride, src, x_step, y_step, width,
                                                     height);
    };
    const bool done = bytes == 1   ? turn(std::integral_constant<int, 1>())
                      : bytes == 3 ? turn(std::integral_constant<int, 3>())
                                   : turn(std::integral_constant<int, 4>());
    if (!done) plain::TurnQuarter(dst, dst_stride, src, x_step, y_step, width, height, bytes);
}

void TurnHalf(Byte* dst, const Byte* src, std::ptrdiff_t count) {
    if (!ReverseInWidest<PXB_TURN_WIDTHS>(dst, src, count)) plain::TurnHalf(dst, src, count);
}

}  // namespace pxb::PXB_TARGET
