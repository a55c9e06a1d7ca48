#include "bench/frame.h"

#include <cstring>
#include <utility>

#include "core/format.h"

namespace pxb::bench {
namespace {

constexpr std::size_t kPage = 4096;

// A block of two by two pixels: bytes in each of its rows, and rows. `channels` are those of
// neighbouring bytes: 0 to 2 for B G R or Y U V, 3 for alpha.
struct PlaneLayout {
    const char* channels;
    int bytes, rows;
};

constexpr PlaneLayout kLayouts[][3] = {
    {{"012", 6, 2}},                          // RGB24
    {{"0123", 8, 2}},                         // RGB32
    {{"0", 2, 2}, {"2", 1, 1}, {"1", 1, 1}},  // YV12
    {{"0102", 4, 2}},                         // YUY2
    {{"0", 2, 2}, {"1", 1, 1}, {"2", 1, 1}},  // I420
    {{"0", 2, 2}},                            // RGB8
    {{"0", 2, 2}, {"1", 1, 2}, {"2", 1, 2}},  // YUV422
    {{"3012", 8, 2}},                         // AYUV32
    {{"0", 2, 2}, {"12", 2, 1}},              // NV12
};

// Each channel rises or falls along its own axis, within the studio range. Channels that a
// competitor confuses therefore differ by a hundred levels.
int Ramp(char channel, int x, int width, int y, int height) {
    constexpr int kLow = 16, kRange = 219;
    switch (channel) {
        case '0':
            return kLow + kRange * x / width;
        case '1':
            return kLow + kRange * y / height;
        case '2':
            return kLow + kRange * (width - 1 - x) / width;
        default:
            return kLow + kRange * (height - 1 - y) / height;
    }
}

}  // namespace

Frame::Frame(int format, int width, int height, std::size_t offset) {
    record.format = format;
    record.width = width;
    record.height = height;
    record.bitsPerPixel = FindFormat(format)->bits_per_pixel;
    record.stride = FindFormat(format)->planar420 ? width : width * record.bitsPerPixel / 8;

    memory_ = std::make_unique_for_overwrite<std::uint8_t[]>(capacity() + offset + kPage);
    void* start = memory_.get();
    std::size_t space = kPage + capacity();
    record.data = static_cast<std::uint8_t*>(std::align(kPage, capacity(), start, space)) + offset;
    std::memset(record.data, 1, capacity());
    for (const PlaneLayout& plane : kLayouts[format - 1])
        if (plane.channels)
            AddPlane(plane.bytes * width / 2, plane.rows * height / 2, plane.channels);
    if (format == PXB_YV12) std::swap(data[1], data[2]);
}

void Frame::AddPlane(int row_bytes, int rows, const char* channels) {
    int plane = 0;
    while (data[plane]) ++plane;
    data[plane] = record.data + bytes;
    stride[plane] = row_bytes;
    const int count = static_cast<int>(std::strlen(channels));
    for (int y = 0; y < rows; ++y) {
        std::uint8_t* const row = data[plane] + std::size_t(y) * row_bytes;
        for (int first = 0; first < count; ++first)
            for (int x = first; x < row_bytes; x += count)
                row[x] = static_cast<std::uint8_t>(Ramp(channels[first], x, row_bytes, y, rows));
    }
    bytes += std::size_t(row_bytes) * rows;
}

}  // namespace pxb::bench
