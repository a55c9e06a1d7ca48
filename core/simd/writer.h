// How a kernel walks along its rows: with the widest register class of PXB_WIDTHS that fits.
#pragma once
#include "core/simd/memory.h"
#include "core/simd/wide.h"

namespace pxb::PXB_TARGET {

// The register widths for the rows at hand, with or without those that stream.
template <class... Width>
class WidthsOf {
  public:
    explicit PXB_INLINE WidthsOf(bool streams) : streams_(streams) {}

    // Calls step<V>(x) for V::kPixels pixels from x on, until all `end` are done. The last call
    // reaches back over pixels that are done already rather than go on in plain integers. So a step
    // must not read what it writes: source and destination have to be different memory.
    template <class Step>
    PXB_INLINE void ForPixels(std::ptrdiff_t end, const Step& step) const {
        std::ptrdiff_t x = 0;
        ((x = ReachingBack<Width>(x, end, step)), ...);
    }

    // The same for steps that work on pairs: x is even, and an odd last pixel is left out.
    template <class Step>
    PXB_INLINE void ForPairs(std::ptrdiff_t end, const Step& step) const {
        std::ptrdiff_t x = 0;
        ((x = PairsReachingBack<Width>(x, end & ~std::ptrdiff_t{1}, step)), ...);
    }

    // Each pixel once and in order: for steps that may work in place.
    template <class Step>
    PXB_INLINE void ForPixelsInPlace(std::ptrdiff_t end, const Step& step) const {
        std::ptrdiff_t x = 0;
        ((x = WhileFitting<Width>(x, end, step)), ...);
    }

    // step<V>(left, right) for the V::kPixels pixels from either on, from both ends toward the
    // middle, where the two may overlap. For a reversal in place: what a step finds in the middle
    // then does not matter, as long as it loads both before it stores either.
    template <class Step>
    PXB_INLINE void ForPixelsFromBothEnds(std::ptrdiff_t end, const Step& step) const {
        std::ptrdiff_t done = 0;
        ((done = FromBothEnds<Width>(done, end, step)), ...);
    }

    PXB_INLINE void Leave() const { (LeaveWidth<Width>(), ...); }

  private:
    template <class V>
    PXB_INLINE bool IsUsed() const {
        return streams_ || !V::kStreams;
    }
    template <class V, class Step>
    PXB_INLINE std::ptrdiff_t WhileFitting(std::ptrdiff_t x, std::ptrdiff_t end,
                                           const Step& step) const {
        if (!IsUsed<V>()) return x;
        for (; x + V::kPixels <= end; x += V::kPixels) step.template operator()<V>(x);
        return x;
    }
    template <class V, class Step>
    PXB_INLINE std::ptrdiff_t FromBothEnds(std::ptrdiff_t done, std::ptrdiff_t end,
                                           const Step& step) const {
        if (!IsUsed<V>()) return done;
        for (; end - 2 * done >= V::kPixels; done += V::kPixels) {
            step.template operator()<V>(done, end - done - V::kPixels);
            // A few rounds of plain integers would become a lot of wide code.
            if (V::kPixels <= 2) __asm__ volatile("");
        }
        return done;
    }
    // Streamed stores want aligned addresses: the last ones are left to the next class.
    template <class V, class Step>
    PXB_INLINE std::ptrdiff_t ReachingBack(std::ptrdiff_t x, std::ptrdiff_t end,
                                           const Step& step) const {
        if (V::kStreams) return WhileFitting<V>(x, end, step);
        const std::ptrdiff_t last = end - V::kPixels;
        if (last < 0) return x;
        while (x < end) {
            const std::ptrdiff_t at = x < last ? x : last;
            step.template operator()<V>(at);
            x = at + V::kPixels;
        }
        return end;
    }
    template <class V, class Step>
    PXB_INLINE std::ptrdiff_t PairsReachingBack(std::ptrdiff_t x, std::ptrdiff_t end,
                                                const Step& step) const {
        if constexpr (V::kPixels > 1)
            return ReachingBack<V>(x, end, step);
        else
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

// step<V>(to, from, x) for the pixels of each row of an image, as ForPixels calls it. A negative
// height turns the source upside down.
template <class Step>
PXB_INLINE void ForPixelsOfRows(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                                std::ptrdiff_t src_stride, std::int32_t width, std::int32_t height,
                                const Step& step) {
    const Writer write(width, height);
    ForRows(dst, dst_stride, src, src_stride, height,
            [&](Byte* to, const Byte* from) PXB_INLINE_LAMBDA {
                write.To(to).ForPixels(width, [&]<class V>(std::ptrdiff_t x) PXB_INLINE_LAMBDA {
                    step.template operator()<V>(to, from, x);
                });
            });
}

}  // namespace pxb::PXB_TARGET
