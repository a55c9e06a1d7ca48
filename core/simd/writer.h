// How a kernel walks along its rows: each register class of PXB_WIDTHS goes on where the one before
// it no longer fits.
#pragma once
#include "core/simd/memory.h"
#include "core/simd/wide.h"

namespace pxb::PXB_TARGET {

// The register widths for the rows at hand, with or without those that stream.
template <class... Width>
class WidthsOf {
  public:
    explicit PXB_INLINE WidthsOf(bool streams) : streams_(streams) {}

    // Calls step<V>(x) for V::kPixels pixels at a time, from x = 0 on. Returns the number of pixels
    // done: all `end` of them but an odd last one.
    template <class Step>
    PXB_INLINE std::ptrdiff_t ForPixels(std::ptrdiff_t end, const Step& step) const {
        std::ptrdiff_t x = 0;
        ((x = StepWhileFits<Width>(x, end, step)), ...);
        return x;
    }

    PXB_INLINE void Leave() const { (LeaveWidth<Width>(), ...); }

  private:
    template <class V>
    PXB_INLINE bool IsUsed() const {
        return streams_ || !V::kStreams;
    }
    template <class V, class Step>
    PXB_INLINE std::ptrdiff_t StepWhileFits(std::ptrdiff_t x, std::ptrdiff_t end,
                                            const Step& step) const {
        if (!IsUsed<V>()) return x;
        for (; x + V::kPixels <= end; x += V::kPixels) step.template operator()<V>(x);
        return x;
    }
    template <class V>
    PXB_INLINE void LeaveWidth() const {
        if (IsUsed<V>()) V::Leave();
    }

    bool streams_;
};

using Widths = WidthsOf<PXB_WIDTHS>;

// Lives as long as a kernel writes an image of this size.
class Writer {
  public:
    PXB_INLINE Writer(std::int64_t width, std::int64_t height)
        : streams_(width * height >= kStreamedFromPixels ||
                   width * height <= -kStreamedFromPixels) {}
    PXB_INLINE ~Writer() { Widths(streams_).Leave(); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    // For steps that write to these rows, V::kPixels pixels to each.
    template <class... Row>
    PXB_INLINE Widths To(Row*... rows) const {
        return Widths(streams_ && (IsStreamable(rows) && ...));
    }

  private:
    bool streams_;
};

}  // namespace pxb::PXB_TARGET
