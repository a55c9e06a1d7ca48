// `pxb info`: what a file holds, and how the library keeps a frame of it in memory.
#include <iomanip>
#include <sstream>

#include "commands.h"
#include "error.h"
#include "numbers.h"
#include "printable.h"

namespace pxb::tool {
namespace {

// 30000:1001 is 29.970 a second.
std::string Rate(const std::string& rate) {
    const std::size_t colon = rate.find(':');
    if (colon == std::string::npos) return "";
    const auto frames = ParseNumber(rate.substr(0, colon), 1, INT32_MAX);
    const auto seconds = ParseNumber(rate.substr(colon + 1), 1, INT32_MAX);
    if (!frames || !seconds) return "";
    std::ostringstream text;
    text << ", " << std::setprecision(5) << static_cast<double>(*frames) / *seconds << " a second ("
         << rate << ")";
    return text.str();
}

std::string Parameters(const Video& video) {
    std::string text;
    const auto add = [&](std::string_view name, std::string_view value) {
        if (value.empty()) return;
        text.append(text.empty() ? "" : ", ").append(name).append(" ").append(Printable(value));
    };
    add("interlacing", video.interlacing);
    add("pixel aspect", video.aspect);
    add("layout", video.layout);
    if (video.was_full_range) add("range", "full, converted to studio range");
    for (const std::string& comment : video.comments) add("comment", comment);
    return text;
}

// The record that PxbNew makes for the frame.
void DescribeMemory(std::ostream& text, const std::string& file, const Video& video) {
    ImageBuffer image{};
    image.format = video.format;
    image.width = video.size.width;
    image.height = video.size.height;
    const std::int32_t result = PxbNew(&image, 0);
    PxbDelete(&image);
    if (result != PXB_SUCCESS) throw Error(file, "size", ToString(video.size), "not enough memory");

    text << "in memory   " << image.width << " x " << image.height << ", stride " << image.stride
         << ", as PxbNew stores it\n";
    for (const Plane& plane : PlanesOf(image, {image.width, image.height}))
        text << "  plane     " << std::left << std::setw(10) << plane.samples << "at byte "
             << plane.offset << ", stride " << plane.stride << ", " << plane.rows << " rows of "
             << plane.row_bytes << " bytes, " << plane.stride * plane.rows << " bytes\n";
}

}  // namespace

std::string Describe(const InputOptions& from) {
    InputFile input(from.path);
    const FileType& type = InputType(input, from.layout);
    std::int64_t frames = 0;
    const Video video =
        type.read(input, from.layout,
                  [&](const Video&, const Picture&, std::int64_t) { return ++frames > 0; });
    std::ostringstream text;
    text << Printable(input.name()) << "\n"
         << "type        " << type.description << "\n"
         << "size        " << video.size.width << " x " << video.size.height << "\n"
         << "format      " << video.format << ", " << FormatName(video.format) << "\n"
         << "frames      " << frames << Rate(video.rate) << "\n"
         << "frame       " << FrameBytes(video.format, video.size) << " bytes without gaps\n";
    if (const std::string parameters = Parameters(video); !parameters.empty())
        text << "parameters  " << parameters << "\n";
    if (frames > 0) DescribeMemory(text, input.name(), video);
    return text.str();
}

}  // namespace pxb::tool
