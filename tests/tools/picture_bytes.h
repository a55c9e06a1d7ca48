// Pictures of noise, and what of a picture goes into a file.
#pragma once
#include <string>

#include "picture.h"

namespace pxb::tool {

// All bytes are within the mask.
inline Picture NoisyPicture(PixelFormat format, Size size, unsigned seed, unsigned mask = 255) {
    Picture picture("noise", format, size);
    for (const Plane& plane : picture.Planes())
        for (std::int64_t y = 0; y < plane.rows; ++y)
            for (std::int64_t i = 0; i < plane.row_bytes; ++i)
                picture.Row(plane, y)[i] =
                    static_cast<std::uint8_t>((seed = seed * 1664525 + 1013904223) >> 24 & mask);
    RepeatEdges(picture);
    return picture;
}

inline std::string Visible(const Picture& picture) {
    std::string bytes;
    for (const Plane& plane : picture.Planes())
        for (std::int64_t y = 0; y < plane.rows; ++y)
            bytes.append(reinterpret_cast<const char*>(picture.Row(plane, y)),
                         static_cast<std::size_t>(plane.row_bytes));
    return bytes;
}

}  // namespace pxb::tool
