// Horizontal passes by shuffles. Blocks of destination bytes, one register each, take their bytes
// from windows of the row: a window serves a few destination bytes that follow one another, and a
// shuffle picks and orders what they need. The tables hold an offset for each window, and for each
// block the controls of shuffles and the weights. The last block reaches back over bytes that are
// done already.
//
// Blocks               the class for the instruction set at hand
//   kBytes             of a block
//   kPairWindow        destination bytes of a window that gives pairs of bytes for them
//   kByteWindow        and of one that gives single ones
//   kReach             bytes of a window; it may also be `n` times as long, up to kLongest
//   Slot(w, windows)   where in the tables of a block window w stands, so that packing the
//                      registers of pairs brings bytes into order
//   kControls<n>       registers of controls for a register of the result
//   Pick<n>(...)       the bytes that the controls pick
#pragma once
#include "scale/plain_columns.h"
#include "scale/simd/rows.h"

namespace pxb::PXB_TARGET {

#if defined(PXB_TARGET_AVX2)

struct Blocks : YmmRegister {
    static constexpr int kBytes = 32, kPairWindow = 8, kByteWindow = 16, kReach = 16, kLongest = 4;
    template <int n>
    static constexpr int kControls = n;

    static constexpr PXB_INLINE int Slot(int window, int windows) {
        return windows == 2 ? window : window % 2 * 2 + window / 2;
    }
    // From two windows into the halves of a register.
    template <int n>
    static PXB_INLINE Register Pick(const Byte* row, const std::int32_t* offsets,
                                    const Byte* controls) {
        Register picked = PickPart(row + offsets[0], row + offsets[1], controls);
        for (int k = 1; k < n; ++k)
            picked = Or(picked, PickPart(row + offsets[0] + 16 * k, row + offsets[1] + 16 * k,
                                         controls + kBytes * k));
        return picked;
    }
    // Each of n shuffles of 16 bytes gives what lies in its part, and 0 elsewhere.
    template <int n>
    static PXB_INLINE void SetControl(Byte* controls, int at, int place) {
        for (int k = 0; k < n; ++k)
            controls[kBytes * k + at] = static_cast<Byte>(place / 16 == k ? place % 16 : 0x80);
    }
    static PXB_INLINE Register TakeHighBytes(Register a, Register b) {
        return PackBytes(HighBytes(a), HighBytes(b));
    }
    static PXB_INLINE Register TakeLowBytes(Register a, Register b) { return PackBytes(a, b); }

  private:
    static PXB_INLINE Register PickPart(const Byte* low, const Byte* high, const Byte* controls) {
        const __m256i both = _mm256_inserti128_si256(_mm256_castsi128_si256(XmmRegister::Load(low)),
                                                     XmmRegister::Load(high), 1);
        return _mm256_shuffle_epi8(both, Load(controls));
    }
};

#elif defined(PXB_TARGET_AVX512)

struct Blocks : ZmmRegister {
    static constexpr int kBytes = 64, kPairWindow = 32, kByteWindow = 64, kReach = 64, kLongest = 2;
    template <int n>
    static constexpr int kControls = 1;

    static constexpr PXB_INLINE int Slot(int window, int) { return window; }
    template <int n>
    static PXB_INLINE Register Pick(const Byte* row, const std::int32_t* offsets,
                                    const Byte* controls) {
        const Byte* const window = row + offsets[0];
        if (n == 1) return _mm512_permutexvar_epi8(Load(controls), Load(window));
        return _mm512_permutex2var_epi8(Load(window), Load(controls), Load(window + 64));
    }
    template <int n>
    static PXB_INLINE void SetControl(Byte* controls, int at, int place) {
        controls[at] = static_cast<Byte>(place);
    }
    static PXB_INLINE Register TakeHighBytes(Register a, Register b) {
        return Avx512<Stores::kCached>::Pick(a, b,
                                             [](int i) PXB_INLINE_LAMBDA { return 2 * i + 1; });
    }
    static PXB_INLINE Register TakeLowBytes(Register a, Register b) {
        return Avx512<Stores::kCached>::Pick(a, b, [](int i) PXB_INLINE_LAMBDA { return 2 * i; });
    }
};

#endif

#if !defined(PXB_TARGET_SSE2)

struct WindowTable {
    std::int32_t* offsets;
    Byte *controls, *weights;
};

PXB_INLINE std::ptrdiff_t CountBlocks(std::ptrdiff_t bytes) {
    return (bytes + Blocks::kBytes - 1) / Blocks::kBytes;
}
PXB_INLINE std::ptrdiff_t StartOfBlock(std::ptrdiff_t block, std::ptrdiff_t bytes) {
    const std::ptrdiff_t start = block * Blocks::kBytes, last = bytes - Blocks::kBytes;
    return start < last ? start : last;
}

// For windows of n parts, `registers` of the picked and `weights` of the weights a block.
PXB_INLINE WindowTable TakeWindowTable(Scratch scratch, std::ptrdiff_t bytes, int windows,
                                       int controls, int weights) {
    const std::ptrdiff_t blocks = CountBlocks(bytes);
    return {scratch.Take<std::int32_t>(blocks * windows),
            scratch.Take<Byte>(blocks * controls * Blocks::kBytes),
            scratch.Take<Byte>(blocks * weights * Blocks::kBytes)};
}

// ---- Pairs of neighbours: kPairs of them, two samples apart, for each destination byte ----

constexpr int kPairRegisters = 2,
              kPairWindows = kPairRegisters * Blocks::kBytes / 2 / Blocks::kPairWindow;

// What a byte does not need has weight 0, or is the same byte at half the weight: 256 is none.
template <int n, int kPairs>
PXB_INLINE bool FillPairs(const WindowTable& table, const ScaleJob& job) {
    constexpr int kPicked = Blocks::kControls<n> * Blocks::kBytes;
    constexpr int kOutputs = Blocks::kPairWindow;
    const std::ptrdiff_t blocks = CountBlocks(job.dst_row_bytes);
    for (std::ptrdiff_t block = 0; block < blocks; ++block) {
        ColumnWalk walk(job.layout, job.columns, StartOfBlock(block, job.dst_row_bytes));
        Byte* const controls = table.controls + block * kPairRegisters * kPicked;
        Byte* const weights = table.weights + block * kPairRegisters * kPairs * Blocks::kBytes;
        for (int window = 0; window < kPairWindows; ++window) {
            Column columns[kOutputs];
            for (Column& column : columns) column = walk.Next();
            std::ptrdiff_t base = columns[0].first;
            for (const Column& column : columns)
                if (column.first < base) base = column.first;
            const int slot = Blocks::Slot(window, kPairWindows);
            table.offsets[block * kPairWindows + slot] = static_cast<std::int32_t>(base);
            for (int i = 0; i < kOutputs; ++i) {
                const Column& column = columns[i];
                const auto place = static_cast<int>(column.first - base);
                const int at = (slot * kOutputs + i) * 2;
                const int picked = at / Blocks::kBytes, in_register = at % Blocks::kBytes;
                const bool alone = kPairs == 1 && column.weight[1] == 0;
                const auto next = static_cast<int>(alone ? place : place + column.unit);
                if (next >= n * Blocks::kReach) return false;
                Blocks::SetControl<n>(controls + picked * kPicked, in_register, place);
                Blocks::SetControl<n>(controls + picked * kPicked, in_register + 1, next);
                Byte* const w = weights + picked * kPairs * Blocks::kBytes + in_register;
                if (kPairs == 1) {
                    w[0] = static_cast<Byte>(alone ? 128 : 256 - column.weight[1]);
                    w[1] = static_cast<Byte>(alone ? 128 : column.weight[1]);
                } else {
                    w[0] = column.weight[0], w[1] = column.weight[1];
                    w[Blocks::kBytes] = column.weight[2], w[Blocks::kBytes + 1] = column.weight[3];
                }
            }
        }
    }
    return true;
}

template <int n>
PXB_INLINE void BlendWindows(Byte* to, const Byte* row, const WindowTable& table,
                             std::ptrdiff_t bytes) {
    using B = Blocks;
    constexpr int kPicked = B::kControls<n> * B::kBytes, kOffsets = kPairWindows / kPairRegisters;
    const std::int32_t* offsets = table.offsets;
    const Byte *controls = table.controls, *weights = table.weights;
    const auto flip = B::Set8(kFlip);
    const std::ptrdiff_t last = bytes - B::kBytes;
    for (std::ptrdiff_t x = 0; x < bytes; x += B::kBytes) {
        const auto low = B::MultiplyAddBytes(B::Load(weights), B::Pick<n>(row, offsets, controls));
        const auto high = B::MultiplyAddBytes(
            B::Load(weights + B::kBytes), B::Pick<n>(row, offsets + kOffsets, controls + kPicked));
        B::Store(to + (x < last ? x : last), B::Xor(B::TakeHighBytes(low, high), flip));
        offsets += kPairWindows, controls += 2 * kPicked, weights += 2 * B::kBytes;
    }
}

template <int n>
PXB_INLINE void SumWindows(Byte* to, const Byte* row, const WindowTable& table, std::ptrdiff_t unit,
                           std::ptrdiff_t bytes) {
    using B = Blocks;
    using Row = FlippedRow<B>;
    constexpr int kPicked = B::kControls<n> * B::kBytes, kOffsets = kPairWindows / kPairRegisters;
    const std::int32_t* offsets = table.offsets;
    const Byte *controls = table.controls, *weights = table.weights;
    const Byte* const later = row + 2 * unit;
    const std::ptrdiff_t last = bytes - B::kBytes;
    for (std::ptrdiff_t x = 0; x < bytes; x += B::kBytes) {
        const auto sum = [&](const std::int32_t* from, const Byte* order,
                             const Byte* weight) PXB_INLINE_LAMBDA {
            return Row::RoundedMean(B::Add16(
                B::MultiplyAddBytes(B::Load(weight), B::Pick<n>(row, from, order)),
                B::MultiplyAddBytes(B::Load(weight + B::kBytes), B::Pick<n>(later, from, order))));
        };
        const auto low = sum(offsets, controls, weights);
        const auto high = sum(offsets + kOffsets, controls + kPicked, weights + 2 * B::kBytes);
        B::Store(to + (x < last ? x : last), B::TakeLowBytes(low, high));
        offsets += kPairWindows, controls += 2 * kPicked, weights += 4 * B::kBytes;
    }
}

// ---- Single bytes, straight from a row of the source: windows end with the row ----

constexpr int kByteWindows = Blocks::kBytes / Blocks::kByteWindow;

template <int n>
PXB_INLINE bool FillBytes(const WindowTable& table, const ScaleJob& job) {
    constexpr int kPicked = Blocks::kControls<n> * Blocks::kBytes;
    const std::ptrdiff_t last_base = job.src_row_bytes - n * Blocks::kReach;
    if (last_base < 0) return false;
    const std::ptrdiff_t blocks = CountBlocks(job.dst_row_bytes);
    for (std::ptrdiff_t block = 0; block < blocks; ++block) {
        ColumnWalk walk(job.layout, job.columns, StartOfBlock(block, job.dst_row_bytes));
        for (int window = 0; window < kByteWindows; ++window) {
            Column columns[Blocks::kByteWindow];
            for (Column& column : columns) column = walk.Next();
            std::ptrdiff_t base = last_base;
            for (const Column& column : columns)
                if (column.first < base) base = column.first;
            table.offsets[block * kByteWindows + window] = static_cast<std::int32_t>(base);
            for (int i = 0; i < Blocks::kByteWindow; ++i) {
                const auto place = static_cast<int>(columns[i].first - base);
                if (place >= n * Blocks::kReach) return false;
                Blocks::SetControl<n>(table.controls + block * kPicked,
                                      window * Blocks::kByteWindow + i, place);
            }
        }
    }
    return true;
}

template <int n>
PXB_INLINE void CopyWindows(Byte* to, const Byte* row, const WindowTable& table,
                            std::ptrdiff_t bytes) {
    using B = Blocks;
    const std::int32_t* offsets = table.offsets;
    const Byte* controls = table.controls;
    const std::ptrdiff_t last = bytes - B::kBytes;
    for (std::ptrdiff_t x = 0; x < bytes; x += B::kBytes) {
        B::Store(to + (x < last ? x : last), B::Pick<n>(row, offsets, controls));
        offsets += kByteWindows, controls += B::kControls<n> * B::kBytes;
    }
}

#endif

}  // namespace pxb::PXB_TARGET
