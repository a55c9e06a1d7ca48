// Bilinear scaling beside the same in doubles: pixel centres are mapped onto pixel centres, and what
// lies beyond the edge repeats it. The measure is the peak signal-to-noise ratio, in decibels.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include "bench/scale_rows.h"

namespace pxb::bench {
namespace {

// Samples of one kind in an image.
struct Channel {
    std::uint8_t* first;
    int step, stride, width, height;

    std::uint8_t& At(int x, int y) const { return first[std::ptrdiff_t{y} * stride + x * step]; }
};

std::vector<Channel> ChannelsOf(const Frame& frame) {
    const int width = frame.width(), height = frame.height(), stride = frame.stride[0];
    std::uint8_t* const data = frame.data[0];
    switch (frame.record.format) {
        case PXB_I420:
            return {{data, 1, stride, width, height},
                    {frame.data[1], 1, frame.stride[1], width / 2, height / 2},
                    {frame.data[2], 1, frame.stride[2], width / 2, height / 2}};
        case PXB_YUY2:
            return {{data, 2, stride, width, height},
                    {data + 1, 4, stride, width / 2, height},
                    {data + 3, 4, stride, width / 2, height}};
        default: {
            const int bytes = frame.record.bitsPerPixel / 8;
            std::vector<Channel> channels;
            for (int i = 0; i < std::min(bytes, 3); ++i)
                channels.push_back({data + i, bytes, stride, width, height});
            return channels;
        }
    }
}

// Rings that become finer outwards, up to a period of eight samples in the corners; another phase in
// each channel.
void Paint(const Channel& channel, double phase) {
    const double x_middle = channel.width / 2.0, y_middle = channel.height / 2.0;
    const double scale = 3.14159265 / 8 / std::hypot(x_middle, y_middle);
    for (int y = 0; y < channel.height; ++y)
        for (int x = 0; x < channel.width; ++x) {
            const double dx = x - x_middle, dy = y - y_middle;
            const double wave = std::cos((dx * dx + dy * dy) * scale + phase);
            channel.At(x, y) = static_cast<std::uint8_t>(std::lround(128 + 110 * wave));
        }
}

double Ideal(const Channel& src, double x, double y) {
    x = std::clamp(x, 0.0, src.width - 1.0), y = std::clamp(y, 0.0, src.height - 1.0);
    const int left = static_cast<int>(x), top = static_cast<int>(y);
    const int right = std::min(left + 1, src.width - 1), bottom = std::min(top + 1, src.height - 1);
    return std::lerp(
        std::lerp(double(src.At(left, top)), double(src.At(right, top)), x - left),
        std::lerp(double(src.At(left, bottom)), double(src.At(right, bottom)), x - left), y - top);
}

double DecibelsOf(const Scene& scene) {
    const std::vector<Channel> from = ChannelsOf(scene.src), to = ChannelsOf(scene.dst);
    double squares = 0, count = 0;
    for (std::size_t i = 0; i < to.size(); ++i) {
        const double step_x = double(from[i].width) / to[i].width;
        const double step_y = double(from[i].height) / to[i].height;
        for (int y = 0; y < to[i].height; ++y)
            for (int x = 0; x < to[i].width; ++x) {
                const double ideal =
                    Ideal(from[i], (x + 0.5) * step_x - 0.5, (y + 0.5) * step_y - 0.5);
                squares += (to[i].At(x, y) - ideal) * (to[i].At(x, y) - ideal), ++count;
            }
    }
    return 10 * std::log10(255.0 * 255 * count / squares);
}

}  // namespace

void PrintScalingQuality() {
    std::printf(
        "Bilinear scaling beside the same in doubles, in dB of PSNR. Where swscale and zimg "
        "shrink,\n"
        "they average more pixels than bilinear scaling does.\n\n%-36s%9s",
        "", "ours");
    for (const Scaler& scaler : Scalers()) std::printf("%9s", scaler.name);
    std::printf("\n");
    for (const Row& row : ScaleRows()) {
        if (row.name.find("bilinear") != 0) continue;
        const auto [width, height] = row.task.destination;
        Scene scene(row, width, height, 0);
        const std::vector<Channel> channels = ChannelsOf(scene.src);
        for (std::size_t i = 0; i < channels.size(); ++i) Paint(channels[i], 2.0 * double(i));
        Run(row, scene);
        const std::string name =
            row.name + " " + std::to_string(width) + "x" + std::to_string(height);
        std::printf("%-36s%9.1f", name.c_str(), DecibelsOf(scene));
        for (const Contender& contender : row.task.contenders) {
            const PeerWork peer = contender.prepare(scene);
            if (peer.run) peer.run();
            if (peer.run)
                std::printf("%9.1f", DecibelsOf(scene));
            else
                std::printf("%9s", "-");
        }
        std::printf("\n");
    }
}

}  // namespace pxb::bench
