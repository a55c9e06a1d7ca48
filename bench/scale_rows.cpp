#include "bench/scale_rows.h"

#include <string>

namespace pxb::bench {
namespace {

struct Layout {
    const char* name;
    int format;
};

constexpr Layout kLayouts[] = {{"RGB24", PXB_RGB24},
                               {"RGB32", PXB_RGB32},
                               {"8-bit", PXB_RGB8},
                               {"I420", PXB_I420},
                               {"YUY2", PXB_YUY2}};

constexpr struct {
    const char* name;
    Filter filter;
    std::int32_t mode;
} kFilters[] = {{"nearest", Filter::kNearest, 0},
                {"bilinear", Filter::kBilinear, 1},
                {"mode 6", Filter::kShrinking, 6}};

constexpr struct {
    const char* from;
    Size source, destination;
} kWays[] = {{"1080p", {1920, 1080}, {1280, 720}},
             {"1080p", {1920, 1080}, {960, 540}},
             {"1080p", {1920, 1080}, {480, 270}},
             {"720p", {1280, 720}, {1920, 1080}},
             {"320x240", {320, 240}, {160, 120}}};

std::vector<Contender> ContendersFor(Filter filter) {
    std::vector<Contender> contenders;
    for (const Scaler& scaler : Scalers())
        contenders.push_back({filter == Filter::kShrinking ? scaler.shrinking : scaler.name,
                              [=](Scene& scene) { return scaler.prepare(filter, scene); }});
    return contenders;
}

}  // namespace

std::vector<Row> ScaleRows() {
    std::vector<Row> rows;
    for (const auto& [filter_name, filter, mode] : kFilters)
        for (const auto& [layout_name, format] : kLayouts)
            for (const auto& [from, source, destination] : kWays) {
                // The packed route has no modes, and mode 6 does not enlarge.
                if (format == PXB_YUY2 && filter != Filter::kBilinear) continue;
                if (filter == Filter::kShrinking && destination.width > source.width) continue;
                Task task = {source, destination, {}, ContendersFor(filter), {}};
                task.run = [mode = mode](Scene& scene) {
                    return PxbResize(&scene.dst.record, &scene.src.record, &mode);
                };
                rows.push_back({std::string(filter_name) + " " + layout_name + " of " + from,
                                Job::kTask,
                                format,
                                format,
                                {},
                                task});
            }
    return rows;
}

std::span<const Scaler> Scalers() {
    static const std::vector<Scaler> kScalers = {
#if defined(PXB_PEER_LIBYUV)
        {"libyuv", "libyuv box", ScaleWithLibyuv},
#endif
#if defined(PXB_PEER_SWSCALE)
        {"swscale", "swscale area", ScaleWithSwscale},
#endif
#if defined(PXB_PEER_OPENCV)
        {"opencv", "opencv area", ScaleWithOpencv},
#endif
#if defined(PXB_PEER_PIXMAN)
        {"pixman", "pixman box", ScaleWithPixman},
#endif
#if defined(PXB_PEER_ZIMG)
        {"zimg", "zimg wide spline", ScaleWithZimg},
#endif
    };
    return kScalers;
}

}  // namespace pxb::bench
