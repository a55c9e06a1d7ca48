// Which filter an interpolation mode means for the images at hand.
#pragma once
#include <cstdint>

namespace pxb {

enum class Filter {
    kNothing,  // nothing is written
    kNearest,
    kBilinear,  // edges repeat
    kFaded,     // bilinear, edges fade to 0 over one destination pixel
    kSpline,    // cubic B-spline of 4 x 4 pixels
};

// In pixels; negative ones count as 0.
struct ScaleExtents {
    std::int32_t dst_width, dst_height, src_width, src_height;
};

// For interleaved pixels of such sizes in bytes.
Filter FilterOfPixels(std::int32_t mode, const ScaleExtents& extents, int src_bytes, int dst_bytes);

// For planar images, by the extents of their luma.
Filter FilterOfPlanes(std::int32_t mode, const ScaleExtents& luma);

// What is left of a filter for one plane: of a single pixel or row there is nothing to interpolate.
Filter FilterOfPlane(Filter filter, const ScaleExtents& plane);

}  // namespace pxb
