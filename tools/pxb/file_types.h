// The types of files that the tool reads and writes: one table.
#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formats.h"
#include "input_file.h"
#include "output_file.h"
#include "picture.h"

namespace pxb::tool {

inline constexpr int kDefaultQuality = 90;  // of 1 to 100

// What a file says about its frames beside their pixels.
struct Video {
    PixelFormat format;
    Size size;
    // Y4M alone has the rest, kept word for word. The rate is a fraction, 25:1.
    std::string rate = {}, interlacing = {}, aspect = {}, layout = {};
    std::vector<std::string> comments = {};
    // Whether samples were converted to studio range while they were read.
    bool was_full_range = false;
    // Whether the fourth bytes of RGB32, or the first of AYUV32, are alpha. Without a value the file
    // could not say so.
    std::optional<bool> alpha = {};
    int quality = kDefaultQuality;  // for a type that has a choice
};

// Of YUV samples: all 256 values, or those of studios, which the library computes in.
enum class Range {
    kFull,
    kLimited
};

// What people say about a file that does not tell by itself, or tells them wrongly.
struct RawLayout {
    std::optional<Size> size;
    std::optional<PixelFormat> format;
    std::string_view size_option = "--size";      // how they say it
    std::optional<Range> range = {};              // of a Y4M file
    std::int64_t max_pixels = kDefaultMaxPixels;  // that a picture may claim to have
};

// Takes the frames one by one, numbered from 0, and may move from them; false: no more are wanted.
using FrameSink = std::function<bool(const Video&, Picture&, std::int64_t number)>;

struct FileType {
    std::string_view name;                     // for --type
    std::string_view description;              // for people
    std::vector<std::string_view> extensions;  // without the dot, lower case
    std::vector<std::string_view> magic;       // how such files begin
    std::vector<PixelFormat> formats;  // that it holds; in a conversion the first is tried first
    bool many_frames, keeps_alpha;
    // Reads the header, then frames until the sink or the file ends. Returns the header.
    Video (*read)(InputFile&, const RawLayout&, const FrameSink&);
    // Writes one frame; the header comes with frame 0. Null where the type is only read.
    void (*write)(OutputFile&, const Video&, const Picture&, std::int64_t number);
    // Goes on after a sink that wanted no more: the frame `number`, or nothing behind the last one.
    // Null where a file holds one frame.
    std::optional<Picture> (*next)(InputFile&, const Video&, std::int64_t number) = nullptr;

    bool Holds(PixelFormat format) const;
};

// Whether the fourth bytes of an RGB32 picture are alpha. Where the input could not say, they are
// unless they would hide all pixels.
bool HasAlpha(const Video& video, const Picture& picture);

std::span<const FileType> FileTypes();
// By its name or an extension, in any case. Names and codes of pixel formats stand for raw frames.
const FileType* FindFileType(std::string_view name);
std::string FileTypeNames();  // that can be written, separated by commas

// By extension, else by the first bytes, else raw frames if `layout` tells their size.
const FileType& InputType(InputFile& input, const RawLayout& layout);
// By `type_name`, or if that is empty by extension.
const FileType& OutputType(const std::string& path, const std::string& type_name);

// The format that a file of raw frames has by its extension: out.nv12.
std::optional<PixelFormat> FormatByExtension(std::string_view path);

}  // namespace pxb::tool
