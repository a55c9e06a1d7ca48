// Columns of a layout, eight bytes of a destination row at a time: what ColumnWalk gives, in
// registers. The tables of windows are filled from them.
#pragma once
#include "scale/column.h"
#include "scale/simd/rows.h"

namespace pxb::PXB_TARGET {

#if !defined(PXB_TARGET_SSE2)

struct EightColumns {
    __m256i first, unit, weight;  // as in Column; the weights of a point in one lane
};

class EightColumnWalk {
  public:
    explicit PXB_INLINE EightColumnWalk(const ScaleJob& job)
        : layout_(job.layout),
          tables_{job.columns[0], job.columns[1] ? job.columns[1] : job.columns[0]},
          has_chroma_(job.columns[1] != nullptr) {
        // Steps of eight bytes come back to the start of a group, except where that is 3 bytes.
        const int phases = layout_.group_bytes == 3 ? 3 : 1;
        for (int phase = 0; phase < phases; ++phase) SetPhase(phase);
    }

    PXB_INLINE void StartAt(std::ptrdiff_t byte) {
        group_ = byte / layout_.group_bytes;
        phase_ = static_cast<int>(byte % layout_.group_bytes);
    }

    // May load points behind the last: the memory after a table is that of the same call.
    PXB_INLINE EightColumns Next() {
        const Phase& phase = phases_[phase_];
        const __m256i order = LoadLanes(phase.point), unit = LoadLanes(phase.unit);
        Points points = PointsOf(0, order);
        if (has_chroma_) {
            const Points chroma = PointsOf(1, order);
            const __m256i is_chroma = LoadLanes(phase.is_chroma);
            points.first = _mm256_blendv_epi8(points.first, chroma.first, is_chroma);
            points.weight = _mm256_blendv_epi8(points.weight, chroma.weight, is_chroma);
        }
        Advance();
        return {_mm256_add_epi32(_mm256_mullo_epi32(points.first, unit), LoadLanes(phase.channel)),
                unit, points.weight};
    }

  private:
    struct Phase {
        std::int32_t point[8], unit[8], channel[8], is_chroma[8];
    };
    struct Points {
        __m256i first, weight;
    };

    PXB_INLINE void SetPhase(int start) {
        Phase& phase = phases_[start];
        for (int i = 0; i < 8; ++i) {
            const ByteOfGroup& byte = layout_.bytes[(start + i) % layout_.group_bytes];
            const int point = (start + i) / layout_.group_bytes * byte.each + byte.nth;
            phase.point[i] = LaneOf(point);
            phase.unit[i] = byte.unit;
            phase.channel[i] = byte.channel;
            phase.is_chroma[i] = byte.table ? -1 : 0;
        }
    }
    // Where PointsOf finds one of eight points.
    static PXB_INLINE int LaneOf(int point) {
        return (point & 1) | (point & 2) << 1 | (point & 4) >> 1;
    }
    PXB_INLINE Points PointsOf(int table, __m256i order) const {
        const std::ptrdiff_t each = has_chroma_ && table == 0 ? 2 : 1;
        const SourcePoint* const from = tables_[table] + group_ * each;
        const __m256 low = _mm256_castsi256_ps(LoadLanes(&from[0].first));
        const __m256 high = _mm256_castsi256_ps(LoadLanes(&from[4].first));
        const auto taken = [&](__m256 a) PXB_INLINE_LAMBDA {
            return _mm256_permutevar8x32_epi32(_mm256_castps_si256(a), order);
        };
        return {taken(_mm256_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0))),
                taken(_mm256_shuffle_ps(low, high, _MM_SHUFFLE(3, 1, 3, 1)))};
    }
    PXB_INLINE void Advance() {
        const int group = layout_.group_bytes;
        group_ += 8 / group;
        phase_ += 8 % group;
        if (phase_ < group) return;
        phase_ -= group;
        ++group_;
    }
    static PXB_INLINE __m256i LoadLanes(const std::int32_t* lanes) {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(lanes));
    }

    const PixelLayout& layout_;
    const SourcePoint* const tables_[2];
    const bool has_chroma_;
    Phase phases_[3];
    std::ptrdiff_t group_ = 0;
    int phase_ = 0;
};

PXB_INLINE int LeastLane(__m256i a) {
    __m128i least = _mm_min_epi32(_mm256_castsi256_si128(a), _mm256_extracti128_si256(a, 1));
    least = _mm_min_epi32(least, _mm_shuffle_epi32(least, _MM_SHUFFLE(1, 0, 3, 2)));
    least = _mm_min_epi32(least, _mm_shuffle_epi32(least, _MM_SHUFFLE(2, 3, 0, 1)));
    return _mm_cvtsi128_si32(least);
}

// Eight lanes up to 65535.
PXB_INLINE __m128i WordsOf(__m256i lanes) {
    const __m256i words = _mm256_packus_epi32(lanes, lanes);
    return _mm256_castsi256_si128(_mm256_permute4x64_epi64(words, _MM_SHUFFLE(3, 1, 2, 0)));
}

#endif

}  // namespace pxb::PXB_TARGET
