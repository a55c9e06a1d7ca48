// The horizontal passes of a job: by windows of as few parts as serve its ratio, or byte by byte.
#pragma once
#include "scale/simd/windows.h"

namespace pxb::PXB_TARGET {

#if defined(PXB_TARGET_SSE2)

// There are no shuffles of bytes.
class CopyAcross {
  public:
    PXB_INLINE CopyAcross(const ScaleJob& job, Scratch) : job_(job) {}
    PXB_INLINE void operator()(Byte* to, const Byte* row) const { CopyColumns(to, row, job_); }

  private:
    const ScaleJob& job_;
};

class BlendAcross {
  public:
    PXB_INLINE BlendAcross(const ScaleJob& job, Scratch scratch)
        : columns_(TakeBlendColumns(scratch, job)), bytes_(job.dst_row_bytes) {}
    PXB_INLINE void operator()(Byte* to, const Byte* row) const {
        BlendColumns<kFlip>(to, row, columns_, bytes_);
    }

  private:
    const BlendColumn* columns_;
    std::ptrdiff_t bytes_;
};

class SumAcross {
  public:
    PXB_INLINE SumAcross(const ScaleJob& job, Scratch scratch)
        : columns_(TakeSumColumns(scratch, job)),
          unit_(job.layout.bytes[0].unit),
          bytes_(job.dst_row_bytes) {}
    PXB_INLINE void operator()(Byte* to, const Byte* row) const {
        SumColumns<kFlip>(to, row, columns_, unit_, bytes_);
    }

  private:
    const SumColumn* columns_;
    std::ptrdiff_t unit_, bytes_;
};

#else

// The fewest parts, up to kMost, for which fill<n>() returns true, or 0.
template <int kMost, int n = 1, class Fill>
PXB_INLINE int FewestParts(const Fill& fill) {
    if (fill.template operator()<n>()) return n;
    if constexpr (n < kMost)
        return FewestParts<kMost, n + 1>(fill);
    else
        return 0;
}

// run<n>() for n = parts, up to kMost; false for 0.
template <int kMost, int n = 1, class Run>
PXB_INLINE bool RunParts(int parts, const Run& run) {
    if (parts == n) return run.template operator()<n>(), true;
    if constexpr (n < kMost)
        return RunParts<kMost, n + 1>(parts, run);
    else
        return false;
}

class CopyAcross {
  public:
    PXB_INLINE CopyAcross(const ScaleJob& job, Scratch scratch)
        : job_(job),
          table_(TakeWindowTable(scratch, job.dst_row_bytes, kByteWindows, Blocks::kControls<kMost>,
                                 0)) {
        if (job.dst_row_bytes < Blocks::kBytes || job.dst_row_bytes == job.src_row_bytes) return;
        parts_ = FewestParts<kMost>([&]<int n>()
                                        PXB_INLINE_LAMBDA { return FillBytes<n>(table_, job); });
    }
    PXB_INLINE void operator()(Byte* to, const Byte* row) const {
        const bool done = RunParts<kMost>(parts_, [&]<int n>() PXB_INLINE_LAMBDA {
            CopyWindows<n>(to, row, table_, job_.dst_row_bytes);
        });
        if (!done) CopyColumns(to, row, job_);
    }

  private:
    static constexpr int kMost = Blocks::kLongest;
    const ScaleJob& job_;
    const WindowTable table_;
    int parts_ = 0;
};

class BlendAcross {
  public:
    PXB_INLINE BlendAcross(const ScaleJob& job, Scratch scratch)
        : table_(TakeWindowTable(scratch, job.dst_row_bytes, kPairWindows,
                                 kPairRegisters * Blocks::kControls<kMost>, kPairRegisters)),
          bytes_(job.dst_row_bytes) {
        if (bytes_ >= Blocks::kBytes && !job.layout.has_zero_byte)
            parts_ = FewestParts<kMost>(
                [&]<int n>() PXB_INLINE_LAMBDA { return FillPairs<n, 1>(table_, job); });
        if (!parts_) columns_ = TakeBlendColumns(scratch, job);
    }
    PXB_INLINE void operator()(Byte* to, const Byte* row) const {
        const bool done = RunParts<kMost>(
            parts_, [&]<int n>() PXB_INLINE_LAMBDA { BlendWindows<n>(to, row, table_, bytes_); });
        if (!done) BlendColumns<kFlip>(to, row, columns_, bytes_);
    }

  private:
    static constexpr int kMost = Blocks::kLongest < 3 ? Blocks::kLongest : 3;
    const WindowTable table_;
    const std::ptrdiff_t bytes_;
    const BlendColumn* columns_ = nullptr;
    int parts_ = 0;
};

class SumAcross {
  public:
    PXB_INLINE SumAcross(const ScaleJob& job, Scratch scratch)
        : table_(TakeWindowTable(scratch, job.dst_row_bytes, kPairWindows,
                                 kPairRegisters * Blocks::kControls<kMost>, 2 * kPairRegisters)),
          unit_(job.layout.bytes[0].unit),
          bytes_(job.dst_row_bytes) {
        if (bytes_ >= Blocks::kBytes)
            parts_ = FewestParts<kMost>(
                [&]<int n>() PXB_INLINE_LAMBDA { return FillPairs<n, 2>(table_, job); });
        if (!parts_) columns_ = TakeSumColumns(scratch, job);
    }
    PXB_INLINE void operator()(Byte* to, const Byte* row) const {
        const bool done = RunParts<kMost>(parts_, [&]<int n>() PXB_INLINE_LAMBDA {
            SumWindows<n>(to, row, table_, unit_, bytes_);
        });
        if (!done) SumColumns<kFlip>(to, row, columns_, unit_, bytes_);
    }

  private:
    static constexpr int kMost = Blocks::kLongest < 3 ? Blocks::kLongest : 3;
    const WindowTable table_;
    const std::ptrdiff_t unit_, bytes_;
    const SumColumn* columns_ = nullptr;
    int parts_ = 0;
};

#endif

}  // namespace pxb::PXB_TARGET
