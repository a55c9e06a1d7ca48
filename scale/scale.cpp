#include "scale/scale.h"

#include <cstddef>
#include <limits>
#include <new>

#include "scale/passes.h"

namespace pxb {
namespace {

constexpr std::int64_t kAlignment = 64;

// The memory of a call.
class Memory {
  public:
    explicit Memory(std::int64_t bytes) {
        if (bytes > std::numeric_limits<std::ptrdiff_t>::max() - kAlignment) return;
        const auto size = static_cast<std::size_t>(bytes + kAlignment);
        block_ = static_cast<Byte*>(::operator new(size, std::nothrow));
        const auto address = reinterpret_cast<std::uintptr_t>(block_);
        next_ = block_ + (-address & (kAlignment - 1));
    }
    ~Memory() { ::operator delete(block_); }
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;

    explicit operator bool() const { return block_ != nullptr; }
    SourcePoint* TakePoints(std::int64_t count) {
        SourcePoint* const points = reinterpret_cast<SourcePoint*>(next_);
        next_ += PointBytes(count);
        return points;
    }
    Byte* Rest() const { return next_; }

    static constexpr std::int64_t PointBytes(std::int64_t count) {
        constexpr std::int64_t kBytes = sizeof(SourcePoint);
        return (kBytes * count + kAlignment - 1) / kAlignment * kAlignment;
    }

  private:
    Byte* block_ = nullptr;
    Byte* next_ = nullptr;
};

struct Axis {
    std::int32_t dst, src;
};
Axis AcrossOf(const ScaleExtents& e) {
    return {e.dst_width, e.src_width};
}
Axis DownOf(const ScaleExtents& e) {
    return {e.dst_height, e.src_height};
}

const SourcePoint* TakeTable(Memory& memory, const Axis& axis, Filter filter, bool tight = false) {
    SourcePoint* const points = memory.TakePoints(axis.dst);
    kSourceTable.Choose()(points, axis.dst, axis.src, filter, tight);
    return points;
}

std::int64_t ScratchBytesOf(const ScaleJob& job) {
    return ScratchBytes(job.dst_row_bytes, job.src_row_bytes);
}

std::int64_t PointBytesOf(const ScaleExtents& e) {
    return Memory::PointBytes(e.dst_width) + Memory::PointBytes(e.dst_height);
}

// A fourth byte that the source does not have becomes 0.
PixelLayout LayoutOfPixels(int src_bytes, int dst_bytes) {
    PixelLayout layout = {static_cast<Byte>(dst_bytes), dst_bytes > src_bytes, {}};
    for (int k = 0; k < dst_bytes; ++k)
        layout.bytes[k] = k < src_bytes ? ByteOfGroup{0, 1, 0, static_cast<Byte>(src_bytes),
                                                      static_cast<std::int16_t>(k)}
                                        : kZeroByte;
    return layout;
}

// Y0 U Y1 V: luma of the first table, two points a group, chroma of the second.
constexpr PixelLayout kPacked422 = {
    4, false, {{0, 2, 0, 2, 0}, {1, 1, 0, 4, 1}, {0, 2, 1, 2, 0}, {1, 1, 0, 4, 3}}};

// Tables of filters hold offsets of 32 bits. No stride could name rows that are longer.
bool HasLongRows(const ScaleJob& job) {
    constexpr std::int64_t kLongest = std::numeric_limits<std::int32_t>::max();
    return job.dst_row_bytes > kLongest || job.src_row_bytes > kLongest;
}

void Run(Filter filter, const ScaleJob& job) {
    if (filter != Filter::kNearest && HasLongRows(job)) return;
    switch (filter) {
        case Filter::kNothing:
            return;
        case Filter::kNearest:
            return kScaleNearest.Choose()(job);
        case Filter::kBilinear:
        case Filter::kFaded:
            return kScaleBilinear.Choose()(job);
        case Filter::kSpline:
            return kScaleSpline.Choose()(job);
    }
}

ScaleJob JobOf(const PixelLayout& layout, int src_bytes, const ScaleExtents& e,
               std::ptrdiff_t dst_stride, std::ptrdiff_t src_stride) {
    ScaleJob job = {};
    job.planes = 1;
    job.dst_stride = dst_stride;
    job.src_stride = src_stride;
    job.dst_row_bytes = std::ptrdiff_t{e.dst_width} * layout.group_bytes;
    job.src_row_bytes = std::ptrdiff_t{e.src_width} * src_bytes;
    job.dst_height = e.dst_height;
    job.src_height = e.src_height;
    job.layout = layout;
    return job;
}

ScaleExtents HalfOf(const ScaleExtents& e) {
    return {e.dst_width / 2, e.dst_height / 2, e.src_width / 2, e.src_height / 2};
}

}  // namespace

void ScaleInterleaved(const PixelRows<Byte>& dst, const PixelRows<const Byte>& src,
                      std::int32_t mode, const ScaleExtents& e) {
    const int src_bytes = src.bytes_per_pixel, dst_bytes = dst.bytes_per_pixel;
    const Filter filter = FilterOfPixels(mode, e, src_bytes, dst_bytes);
    if (filter == Filter::kNothing) return;
    ScaleJob job =
        JobOf(LayoutOfPixels(src_bytes, dst_bytes), src_bytes, e, dst.stride, src.stride);
    Memory memory(PointBytesOf(e) + ScratchBytesOf(job));
    if (!memory) return;
    job.dst[0] = dst.data;
    job.src[0] = src.data;
    job.columns[0] = TakeTable(memory, AcrossOf(e), filter, src_bytes == 3);
    job.rows = TakeTable(memory, DownOf(e), filter);
    job.scratch = memory.Rest();
    // Between depths a pixel alone is one of weight 0.
    const bool mixed_nearest = filter == Filter::kNearest && src_bytes != dst_bytes;
    Run(mixed_nearest ? Filter::kBilinear : filter, job);
}

void ScalePlanar420(const Planes420& dst, const Planes420& src, std::int32_t mode,
                    const ScaleExtents& luma) {
    const ScaleExtents chroma = HalfOf(luma);
    const Filter filter = FilterOfPlanes(mode, luma);
    if (filter == Filter::kNothing) return;
    const Filter chroma_filter = FilterOfPlane(filter, chroma);
    const PixelLayout bytes = LayoutOfPixels(1, 1);
    ScaleJob job = JobOf(bytes, 1, luma, dst.stride, src.stride);
    ScaleJob chroma_job = JobOf(bytes, 1, chroma, dst.chroma_stride, src.chroma_stride);
    // Luma needs the more scratch memory of both.
    Memory memory(PointBytesOf(luma) + PointBytesOf(chroma) + ScratchBytesOf(job));
    if (!memory) return;
    job.dst[0] = dst.y;
    job.src[0] = src.y;
    job.columns[0] = TakeTable(memory, AcrossOf(luma), filter);
    job.rows = TakeTable(memory, DownOf(luma), filter);
    chroma_job.planes = 2;
    chroma_job.dst[0] = dst.u, chroma_job.dst[1] = dst.v;
    chroma_job.src[0] = src.u, chroma_job.src[1] = src.v;
    chroma_job.columns[0] = TakeTable(memory, AcrossOf(chroma), chroma_filter);
    chroma_job.rows = TakeTable(memory, DownOf(chroma), chroma_filter);
    job.scratch = chroma_job.scratch = memory.Rest();
    Run(filter, job);
    Run(chroma_filter, chroma_job);
}

void ScalePacked422(Byte* dst, std::ptrdiff_t dst_stride, const Byte* src,
                    std::ptrdiff_t src_stride, const ScaleExtents& luma) {
    const ScaleExtents chroma = HalfOf(luma);
    if (chroma.dst_width <= 0 || chroma.src_width <= 0) return;
    if (luma.dst_height <= 0 || luma.src_height <= 0) return;
    ScaleJob job = JobOf(kPacked422, 2, luma, dst_stride, src_stride);
    job.dst_row_bytes = std::ptrdiff_t{chroma.dst_width} * kPacked422.group_bytes;
    job.src_row_bytes -=
        luma.src_width % 2;  // the last luma of an odd row has no chroma of its own
    Memory memory(PointBytesOf(luma) + PointBytesOf(chroma) + ScratchBytesOf(job));
    if (!memory) return;
    job.dst[0] = dst;
    job.src[0] = src;
    job.columns[0] = TakeTable(memory, AcrossOf(luma), Filter::kBilinear);
    job.columns[1] = TakeTable(memory, AcrossOf(chroma), Filter::kBilinear);
    job.rows = TakeTable(memory, DownOf(luma), Filter::kBilinear);
    job.scratch = memory.Rest();
    Run(Filter::kBilinear, job);
}

}  // namespace pxb
