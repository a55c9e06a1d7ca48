// The horizontal passes of a job: by windows of as few parts as serve its ratio, or byte by byte.
#pragma once
#include "scale/simd/even.h"

namespace pxb::PXB_TARGET {

#if defined(PXB_TARGET_SSE2)

// There are no shuffles of bytes.
class BlendAcross {
  public:
    PXB_INLINE BlendAcross(const ScaleJob& job, Scratch scratch)
        : columns_(TakeBlendColumns(scratch, job)), bytes_(job.dst_row_bytes) {}
    // NOLINTNEXTLINE(readability-convert-member-functions-to-static): others do need the object
    PXB_INLINE bool TakeBoth(Byte*, const Byte*, const Byte*, int, std::ptrdiff_t) const {
        return false;
    }
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

constexpr int kNoWindows = -1, kShared = 0;  // instead of a number of parts

// The first n from kFirst to kMost for which fill<n>() returns true.
template <int kFirst, int kMost, class Fill>
PXB_INLINE int FewestParts(const Fill& fill) {
    if (fill.template operator()<kFirst>()) return kFirst;
    if constexpr (kFirst < kMost)
        return FewestParts<kFirst + 1, kMost>(fill);
    else
        return kNoWindows;
}

// run<n>() for n = parts; false for no windows.
template <int kFirst, int kMost, class Run>
PXB_INLINE bool RunParts(int parts, const Run& run) {
    if (parts == kFirst) return run.template operator()<kFirst>(), true;
    if constexpr (kFirst < kMost)
        return RunParts<kFirst + 1, kMost>(parts, run);
    else
        return false;
}

class CopyAcross {
  public:
    PXB_INLINE CopyAcross(const ScaleJob& job, Scratch scratch)
        : job_(job),
          even_(EvenLayoutOf(job, 0)),
          controls_(even_),
          table_(TakeWindowTable(scratch, job.dst_row_bytes, kByteWindows, Blocks::kControls<kMost>,
                                 0)) {
        if (even_.times || job.dst_row_bytes < Blocks::kBytes) return;
        if (job.dst_row_bytes == job.src_row_bytes || job.src_row_bytes > INT32_MAX) return;
        parts_ = FewestParts<1, kMost>([&]<int n>()
                                           PXB_INLINE_LAMBDA { return FillBytes<n>(table_, job); });
    }
    PXB_INLINE void operator()(Byte* to, const Byte* row) const {
        if (even_.times == 2)
            return CopyEven<2>(to, row, controls_, job_.dst_row_bytes, job_.src_stride);
        if (even_.times == 4)
            return CopyEven<4>(to, row, controls_, job_.dst_row_bytes, job_.src_stride);
        const bool done = RunParts<1, kMost>(parts_, [&]<int n>() PXB_INLINE_LAMBDA {
            CopyWindows<n>(to, row, table_, job_.dst_row_bytes);
        });
        if (!done) CopyColumns(to, row, job_);
    }

  private:
    static constexpr int kMost = Blocks::kLongest;
    const ScaleJob& job_;
    const EvenLayout even_;
    const EvenControls controls_;
    const WindowTable table_;
    int parts_ = kNoWindows;
};

class BlendAcross {
  public:
    PXB_INLINE BlendAcross(const ScaleJob& job, Scratch scratch)
        : even_(EvenLayoutOf(job, kHalf)),
          controls_(even_),
          table_(TakeWindowTable(scratch, job.dst_row_bytes, kPairWindows,
                                 kPairRegisters * Blocks::kControls<kMost>, kPairRegisters)),
          bytes_(job.dst_row_bytes) {
        if (even_.times && AllRowsWeigh(job, kHalf)) return;
        if (bytes_ >= Blocks::kBytes && !job.layout.has_zero_byte)
            parts_ = FewestParts<kShared, kMost>([&]<int n>() PXB_INLINE_LAMBDA {
                return FillPairs<kParts<n>, kWindow<n>, BlendWeights>(table_, job);
            });
        if (parts_ == kNoWindows) columns_ = TakeBlendColumns(scratch, job);
    }
    // Both passes at once, where that is possible for these rows.
    PXB_INLINE bool TakeBoth(Byte* to, const Byte* a, const Byte* b, int weight,
                             std::ptrdiff_t stride) const {
        if (weight != kHalf || even_.times == 0) return false;
        if (even_.times == 2)
            AverageEven<2>(to, a, b, controls_, bytes_, stride);
        else
            AverageEven<4>(to, a, b, controls_, bytes_, stride);
        return true;
    }
    PXB_INLINE void operator()(Byte* to, const Byte* row) const {
        const bool done = RunParts<kShared, kMost>(parts_, [&]<int n>() PXB_INLINE_LAMBDA {
            BlendWindows<kParts<n>, kWindow<n> >(to, row, table_, bytes_);
        });
        if (!done) BlendColumns<kFlip>(to, row, columns_, bytes_);
    }

  private:
    template <int n>
    static constexpr int kParts = n == kShared ? 1 : n;
    template <int n>
    static constexpr int kWindow = n == kShared ? Blocks::kSharedWindow : Blocks::kPairWindow;
    static constexpr int kMost = Blocks::kLongest < 3 ? Blocks::kLongest : 3;
    static constexpr int kHalf = 128;
    const EvenLayout even_;
    const EvenControls controls_;
    const WindowTable table_;
    const std::ptrdiff_t bytes_;
    const BlendColumn* columns_ = nullptr;
    int parts_ = kNoWindows;
};

class SumAcross {
  public:
    PXB_INLINE SumAcross(const ScaleJob& job, Scratch scratch)
        : table_(TakeWindowTable(scratch, job.dst_row_bytes, kPairWindows,
                                 kPairRegisters * Blocks::kControls<kMost>, 2 * kPairRegisters)),
          unit_(job.layout.bytes[0].unit),
          bytes_(job.dst_row_bytes) {
        if (bytes_ >= Blocks::kBytes)
            parts_ = FewestParts<1, kMost>([&]<int n>() PXB_INLINE_LAMBDA {
                return FillPairs<n, Blocks::kPairWindow, SumWeights>(table_, job);
            });
        if (parts_ == kNoWindows) columns_ = TakeSumColumns(scratch, job);
    }
    PXB_INLINE void operator()(Byte* to, const Byte* row) const {
        const bool done = RunParts<1, kMost>(parts_, [&]<int n>() PXB_INLINE_LAMBDA {
            SumWindows<n>(to, row, table_, unit_, bytes_);
        });
        if (!done) SumColumns<kFlip>(to, row, columns_, unit_, bytes_);
    }

  private:
    static constexpr int kMost = Blocks::kLongest < 3 ? Blocks::kLongest : 3;
    const WindowTable table_;
    const std::ptrdiff_t unit_, bytes_;
    const SumColumn* columns_ = nullptr;
    int parts_ = kNoWindows;
};

#endif

}  // namespace pxb::PXB_TARGET
