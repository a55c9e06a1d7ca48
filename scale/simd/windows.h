// Horizontal passes by shuffles. Blocks of destination bytes, one register each, take their bytes
// from windows of the row: a window serves a few destination bytes that follow one another, and a
// shuffle picks and orders what they need. The tables hold an offset for each window, and for each
// block the controls of shuffles and the weights. The last block reaches back over bytes that are
// done already.
//
// Blocks               the class for the instruction set at hand
//   kBytes             of a block
//   kPairWindow        destination bytes of a window that gives pairs of bytes for them
//   kSharedWindow      and of one that does so for both registers of pairs, where that reaches
//   kByteWindow        and of one that gives single bytes
//   kReach             bytes of a window; it may also be `n` times as long, up to kLongest
//   Slot(e)            where in the tables of a block the pairs of its e-th eight bytes stand, so
//                      that packing the registers of pairs brings bytes into order
//   kControls<n>       registers of controls for a register of the result
//   Pick<n>(...)       the bytes that the controls pick
#pragma once
#include "scale/plain_columns.h"
#include "scale/simd/eight_columns.h"

namespace pxb::PXB_TARGET {

#if defined(PXB_TARGET_AVX2)

struct Blocks : YmmRegister {
    static constexpr int kBytes = 32, kPairWindow = 8, kSharedWindow = 16, kByteWindow = 16,
                         kReach = 16, kLongest = 4;
    template <int n>
    static constexpr int kControls = n;

    static constexpr PXB_INLINE int Slot(int eight) { return eight % 2 * 2 + eight / 2; }
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
    // Controls for these places: each of n shuffles of 16 bytes gives what lies in its part, and 0
    // elsewhere.
    template <int n, class Store>
    static PXB_INLINE void SetControls(Byte* controls, __m128i places, const Store& store) {
        for (int k = 0; k < n; ++k) {
            const __m128i of_part = _mm_sub_epi8(places, XmmRegister::Set8(16 * k));
            store(controls + kBytes * k, _mm_adds_epu8(of_part, XmmRegister::Set8(0x70)));
        }
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
    static constexpr int kBytes = 64, kPairWindow = 32, kSharedWindow = 64, kByteWindow = 64,
                         kReach = 64, kLongest = 2;
    template <int n>
    static constexpr int kControls = 1;

    static constexpr PXB_INLINE int Slot(int eight) { return eight; }
    template <int n>
    static PXB_INLINE Register Pick(const Byte* row, const std::int32_t* offsets,
                                    const Byte* controls) {
        const Byte* const window = row + offsets[0];
        if (n == 1) return _mm512_permutexvar_epi8(Load(controls), Load(window));
        return _mm512_permutex2var_epi8(Load(window), Load(controls), Load(window + 64));
    }
    template <int n, class Store>
    static PXB_INLINE void SetControls(Byte* controls, __m128i places, const Store& store) {
        store(controls, places);
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

// Weights for a pair. Where the second has none the first comes twice, at half the weight each: as
// a whole it would not fit into a byte.
struct BlendWeights {
    static constexpr int kPairs = 1;
    static PXB_INLINE __m256i NextUnit(const EightColumns& columns) {
        return _mm256_andnot_si256(IsAlone(columns), columns.unit);
    }
    static PXB_INLINE void Set(Byte* weights, const EightColumns& columns) {
        const __m256i second = _mm256_and_si256(columns.weight, _mm256_set1_epi32(0xFF00));
        const __m256i first =
            _mm256_sub_epi32(_mm256_set1_epi32(256), _mm256_srli_epi32(second, 8));
        const __m256i both = _mm256_or_si256(first, second);
        XmmRegister::Store(weights, WordsOf(_mm256_blendv_epi8(both, _mm256_set1_epi32(0x8080),
                                                               IsAlone(columns))));
    }

  private:
    static PXB_INLINE __m256i IsAlone(const EightColumns& columns) {
        const __m256i second = _mm256_and_si256(columns.weight, _mm256_set1_epi32(0xFF00));
        return _mm256_cmpeq_epi32(second, _mm256_setzero_si256());
    }
};

struct SumWeights {
    static constexpr int kPairs = 2;
    static PXB_INLINE __m256i NextUnit(const EightColumns& columns) { return columns.unit; }
    static PXB_INLINE void Set(Byte* weights, const EightColumns& columns) {
        const __m256i low = _mm256_and_si256(columns.weight, _mm256_set1_epi32(0xFFFF));
        XmmRegister::Store(weights, WordsOf(low));
        XmmRegister::Store(weights + Blocks::kBytes,
                           WordsOf(_mm256_srli_epi32(columns.weight, 16)));
    }
};

// False: windows of n parts do not reach.
template <int n, int kWindow, class Weights>
PXB_INLINE bool FillPairs(const WindowTable& table, const ScaleJob& job) {
    constexpr int kPicked = Blocks::kControls<n> * Blocks::kBytes;
    constexpr int kWeights = Weights::kPairs * Blocks::kBytes;
    constexpr int kWindows = Blocks::kBytes / kWindow, kEights = kWindow / 8;
    const std::ptrdiff_t blocks = CountBlocks(job.dst_row_bytes);
    EightColumnWalk walk(job);
    for (std::ptrdiff_t block = 0; block < blocks; ++block) {
        walk.StartAt(StartOfBlock(block, job.dst_row_bytes));
        Byte* const controls = table.controls + block * kPairRegisters * kPicked;
        Byte* const weights = table.weights + block * kPairRegisters * kWeights;
        __m256i furthest = _mm256_setzero_si256();
        for (int window = 0; window < kWindows; ++window) {
            EightColumns columns[kEights];
            for (EightColumns& eight : columns) eight = walk.Next();
            __m256i least = columns[0].first;
            for (const EightColumns& eight : columns) least = _mm256_min_epi32(least, eight.first);
            const int base = LeastLane(least);
            const int slot = kWindow == 8 ? Blocks::Slot(window) : window;
            table.offsets[block * kWindows + slot] = base;
            for (int i = 0; i < kEights; ++i) {
                const __m256i place = _mm256_sub_epi32(columns[i].first, _mm256_set1_epi32(base));
                const __m256i next = _mm256_add_epi32(place, Weights::NextUnit(columns[i]));
                furthest = _mm256_max_epi32(furthest, next);
                const int at = 16 * Blocks::Slot(window * kEights + i);
                const int picked = at / Blocks::kBytes, in_register = at % Blocks::kBytes;
                Blocks::SetControls<n>(controls + picked * kPicked + in_register,
                                       WordsOf(_mm256_or_si256(place, _mm256_slli_epi32(next, 8))),
                                       [](Byte* to, __m128i a)
                                           PXB_INLINE_LAMBDA { XmmRegister::Store(to, a); });
                Weights::Set(weights + picked * kWeights + in_register, columns[i]);
            }
        }
        const __m256i reach = _mm256_set1_epi32(n * Blocks::kReach - 1);
        if (_mm256_movemask_epi8(_mm256_cmpgt_epi32(furthest, reach))) return false;
    }
    return true;
}

template <int n, int kWindow>
PXB_INLINE void BlendWindows(Byte* to, const Byte* row, const WindowTable& table,
                             std::ptrdiff_t bytes) {
    using B = Blocks;
    constexpr int kPicked = B::kControls<n> * B::kBytes,
                  kOffsets = kWindow == B::kPairWindow ? kPairWindows / kPairRegisters : 0;
    const std::int32_t* offsets = table.offsets;
    const Byte *controls = table.controls, *weights = table.weights;
    const auto flip = B::Set8(kFlip);
    const std::ptrdiff_t last = bytes - B::kBytes;
    for (std::ptrdiff_t x = 0; x < bytes; x += B::kBytes) {
        const auto low = B::MultiplyAddBytes(B::Load(weights), B::Pick<n>(row, offsets, controls));
        const auto high = B::MultiplyAddBytes(
            B::Load(weights + B::kBytes), B::Pick<n>(row, offsets + kOffsets, controls + kPicked));
        B::Store(to + (x < last ? x : last), B::Xor(B::TakeHighBytes(low, high), flip));
        offsets += B::kBytes / kWindow, controls += 2 * kPicked, weights += 2 * B::kBytes;
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
    constexpr int kEights = Blocks::kByteWindow / 8;
    const std::ptrdiff_t last_base = job.src_row_bytes - n * Blocks::kReach;
    if (last_base < 0) return false;
    const std::ptrdiff_t blocks = CountBlocks(job.dst_row_bytes);
    EightColumnWalk walk(job);
    for (std::ptrdiff_t block = 0; block < blocks; ++block) {
        walk.StartAt(StartOfBlock(block, job.dst_row_bytes));
        __m256i furthest = _mm256_setzero_si256();
        for (int window = 0; window < kByteWindows; ++window) {
            __m256i firsts[kEights];
            for (__m256i& first : firsts) first = walk.Next().first;
            __m256i least = _mm256_set1_epi32(static_cast<int>(last_base));
            for (const __m256i& first : firsts) least = _mm256_min_epi32(least, first);
            const int base = LeastLane(least);
            table.offsets[block * kByteWindows + window] = base;
            for (int i = 0; i < kEights; ++i) {
                const __m256i place = _mm256_sub_epi32(firsts[i], _mm256_set1_epi32(base));
                furthest = _mm256_max_epi32(furthest, place);
                const __m128i words = WordsOf(place);
                Blocks::SetControls<n>(
                    table.controls + block * kPicked + window * Blocks::kByteWindow + 8 * i,
                    _mm_packus_epi16(words, words), [](Byte* to, __m128i a) PXB_INLINE_LAMBDA {
                        _mm_storel_epi64(reinterpret_cast<__m128i*>(to), a);
                    });
            }
        }
        const __m256i reach = _mm256_set1_epi32(n * Blocks::kReach - 1);
        if (_mm256_movemask_epi8(_mm256_cmpgt_epi32(furthest, reach))) return false;
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
