// The table of file types, and how a file finds its row.
#include "file_types.h"

#include <algorithm>
#include <cctype>

#include "bmp.h"
#include "error.h"
#include "jpeg_file.h"
#include "pam.h"
#include "png_file.h"
#include "pnm.h"
#include "raw.h"
#include "y4m.h"

namespace pxb::tool {
namespace {

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

// Lower case, without the dot; empty for "-" and for names without one.
std::string Extension(std::string_view path) {
    const std::size_t dot = path.find_last_of("./\\");
    if (dot == std::string_view::npos || path[dot] != '.') return "";
    return Lower(path.substr(dot + 1));
}

const FileType* FindByExtension(std::string_view path) {
    const std::string extension = Extension(path);
    for (const FileType& type : FileTypes())
        if (std::ranges::count(type.extensions, extension) != 0) return &type;
    return nullptr;
}

const FileType* FindByContent(InputFile& input) {
    const std::string_view start = input.Peek(16);
    for (const FileType& type : FileTypes())
        for (const std::string_view magic : type.magic)
            if (start.starts_with(magic)) return &type;
    return nullptr;
}

const FileType* FindInputType(InputFile& input, const RawLayout& layout) {
    if (const FileType* type = FindByExtension(input.name())) return type;
    if (layout.size) return FindFileType("raw");
    return FindByContent(input);
}

}  // namespace

bool FileType::Holds(PixelFormat format) const {
    return std::ranges::count(formats, format) != 0;
}

std::span<const FileType> FileTypes() {
    // clang-format off
    static const FileType types[] = {
        {"y4m", "YUV4MPEG2 video", {"y4m"}, {"YUV4MPEG2"},
         {PXB_I420, PXB_YUV422, PXB_RGB8, PXB_AYUV32}, true, false, ReadY4m, WriteY4m, NextY4mFrame},
#if PXB_TOOL_HAS_PNG
        {"png", "PNG picture", {"png"}, {"\x89PNG\r\n\x1a\n"},
         {PXB_RGB24, PXB_RGB8, PXB_RGB32}, false, true, ReadPng, WritePng},
#endif
#if PXB_TOOL_HAS_JPEG
        {"jpeg", "JPEG picture", {"jpg", "jpeg", "jpe"}, {"\xff\xd8\xff"},
         {PXB_RGB24, PXB_RGB8, PXB_RGB32}, false, false, ReadJpeg, WriteJpeg},
#endif
        {"pam", "PAM picture", {"pam"}, {"P7"},
         {PXB_RGB24, PXB_RGB8, PXB_RGB32}, false, true, ReadPam, WritePam},
        {"pnm", "PNM picture", {"pnm"}, {"P1", "P2", "P3", "P4", "P5", "P6"},
         {PXB_RGB24, PXB_RGB8}, false, false, ReadPnm, WritePnm},
        {"ppm", "PPM picture", {"ppm"}, {}, {PXB_RGB24}, false, false, ReadPnm, WritePnm},
        {"pgm", "PGM picture", {"pgm"}, {}, {PXB_RGB8}, false, false, ReadPnm, WritePnm},
        {"pbm", "PBM picture, read only", {"pbm"}, {}, {PXB_RGB8}, false, false, ReadPnm, nullptr},
        {"bmp", "BMP picture", {"bmp", "dib"}, {"BM"},
         {PXB_RGB24, PXB_RGB8, PXB_RGB32}, false, true, ReadBmp, WriteBmp},
        {"raw", "file of raw frames",
         {"raw", "yuv", "rgb", "rgb24", "rgb32", "yv12", "yuy2", "i420", "rgb8", "yuv422", "ayuv32",
          "nv12"},
         {}, {kAllFormats.begin(), kAllFormats.end()}, true, true, ReadRaw, WriteRaw, NextRawFrame},
    };
    // clang-format on
    return types;
}

bool HasAlpha(const Video& video, const Picture& picture) {
    if (picture.format() != PXB_RGB32) return false;
    if (video.alpha) return *video.alpha;
    for (std::int32_t y = 0; y < picture.size().height; ++y)
        for (std::int64_t x = 0; x < picture.size().width; ++x)
            if (picture.Row(y)[4 * x + 3] != 0) return true;
    return false;
}

const FileType* FindFileType(std::string_view name) {
    const std::string lower = Lower(name);
    for (const FileType& type : FileTypes())
        if (type.name == lower || std::ranges::count(type.extensions, lower) != 0) return &type;
    return FindFormatOrCode(name) ? FindFileType("raw") : nullptr;
}

std::string FileTypeNames() {
    std::string names;
    for (const FileType& type : FileTypes())
        if (type.write) names.append(names.empty() ? "" : ", ").append(type.name);
    return names;
}

std::optional<PixelFormat> FormatByExtension(std::string_view path) {
    return FindFormat(Extension(path));
}

const FileType& InputType(InputFile& input, const RawLayout& layout) {
    if (input.AtEnd()) throw Error(input.name(), "", "", "is empty");
    const FileType* const type = FindInputType(input, layout);
    if (!type) {
        std::string known;
        for (const FileType& readable : FileTypes())
            known.append(known.empty() ? "" : ", ").append(readable.name);
        throw Error(input.name(), "file type", "unknown",
                    "can read " + known + "; raw frames need " + std::string(layout.size_option) +
                        " WxH and --format NAME");
    }
    if (type->read != ReadRaw && (layout.size || layout.format))
        throw Error(input.name(), layout.size ? layout.size_option : "--format", "",
                    "is for raw frames, and this is a " + std::string(type->description));
    if (layout.range && type->read != ReadY4m)
        throw Error(input.name(), "--range", "",
                    "is for Y4M video, and this is a " + std::string(type->description));
    return *type;
}

const FileType& OutputType(const std::string& path, const std::string& type_name) {
    const FileType* const type =
        type_name.empty() ? FindByExtension(path) : FindFileType(type_name);
    if (type && type->write) return *type;
    const std::string known = "one of " + FileTypeNames();
    if (!type_name.empty()) throw Error("", "--type", type_name, "is not " + known);
    if (path == "-")
        throw Error("standard output", "file type", "unknown", "give --type, " + known);
    throw Error(
        path, "file type", Extension(path),
        (type ? "is only read; give --type, " : "unknown extension; give --type, ") + known);
}

}  // namespace pxb::tool
