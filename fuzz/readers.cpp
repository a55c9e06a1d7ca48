// The readers of the tool: whatever a file holds, they refuse it with one line that names it, or give
// pictures as large as they say, which written and read again are the same, save those of JPEG.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "error.h"
#include "file_types.h"
#include "fuzz/properties.h"
#include "tools/picture_bytes.h"

namespace pxb::test {
namespace {

using tool::FileType, tool::InputFile, tool::OutputFile, tool::Picture, tool::RawLayout,
    tool::Video;

// A file that goes away.
class Scratch {
  public:
    explicit Scratch(const std::string& name)
        : path_((std::filesystem::temp_directory_path() /
                 ("pxb_fuzz_" + std::to_string(getpid()) + "_" + name))
                    .string()) {}
    ~Scratch() { std::filesystem::remove(path_); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    const std::string& Path() const { return path_; }
    void Put(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }
    std::string Get() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    std::string path_;
};

struct ReadFile {
    Video video;
    std::vector<std::string> frames;
};

ReadFile ReadAll(const FileType& type, const std::string& path, const RawLayout& layout) {
    InputFile input(path);
    std::vector<std::string> frames;
    const Video video = type.read(
        input, layout, [&](const Video& header, const Picture& picture, std::int64_t number) {
            Expect(number == static_cast<std::int64_t>(frames.size()), "number of the frame");
            Expect(picture.format() == header.format && picture.size().width == header.size.width &&
                       picture.size().height == header.size.height,
                   "a picture unlike the header");
            frames.push_back(tool::Visible(picture));
            return frames.size() < 4;
        });
    return {video, frames};
}

// 4:4:4 video has no place for alpha.
void MakeOpaque(Picture& ayuv) {
    for (std::int32_t y = 0; y < ayuv.size().height; ++y)
        for (std::int32_t x = 0; x < ayuv.size().width; ++x) ayuv.Row(y)[4 * x] = 255;
}

bool GivesBackWhatItTakes(const FileType& type) {
    return type.name != "jpeg";
}

// Writes a small file, and tells what is in it.
std::vector<std::string> WriteAny(Bytes& bytes, const FileType& type, const std::string& path,
                                  RawLayout* layout) {
    const auto count = static_cast<int>(type.formats.size());
    const PixelFormat format = type.formats[bytes.Below(count)];
    Video video = {format, {bytes.Between(1, 17), bytes.Between(1, 9)}};
    video.alpha = type.keeps_alpha;
    if (type.name == "raw") layout->size = video.size, layout->format = format;
    std::vector<std::string> frames;
    OutputFile output(path);
    for (int number = 0; number < (type.many_frames ? bytes.Between(1, 3) : 1); ++number) {
        constexpr unsigned kMasks[] = {255, 15, 1, 0};
        Picture picture = tool::NoisyPicture(format, video.size, bytes.Take(1), bytes.Pick(kMasks));
        if (!type.keeps_alpha && format == PXB_AYUV32) MakeOpaque(picture);
        type.write(output, video, picture, number);
        frames.push_back(tool::Visible(picture));
    }
    output.Commit();
    return frames;
}

std::uint32_t AnyNumber(Bytes& bytes) {
    constexpr std::uint32_t kNumbers[] = {0,   1,     2,     15,        16,          254,
                                          256, 65535, 65536, INT32_MAX, 0x80000000u, UINT32_MAX};
    return bytes.OneIn(3) ? bytes.Take(4) : bytes.Pick(kNumbers);
}

// The whole number that has a digit there, or that byte.
void ReplaceDigits(std::string& text, std::size_t at, std::uint32_t number) {
    constexpr const char* kDigits = "0123456789";
    const std::size_t first = text.find_last_not_of(kDigits, at) + 1;
    const std::size_t end = std::min(text.find_first_not_of(kDigits, at), text.size());
    text.replace(std::min(first, at), first < end ? end - first : 1, std::to_string(number));
}

// Of a file that is already there.
void Damage(Bytes& bytes, const Scratch& file) {
    std::string all = file.Get();
    if (bytes.OneIn(4)) all.resize(bytes.Below(static_cast<int>(all.size()) + 1));
    for (int count = bytes.Between(1, 4); count > 0 && !all.empty(); --count) {
        const auto near = std::min<std::size_t>(all.size(), bytes.OneIn(4) ? 65536 : 64);
        const int at = bytes.Below(static_cast<int>(near)), kind = bytes.Below(3);
        const std::uint32_t number = AnyNumber(bytes);
        if (kind == 0)
            ReplaceDigits(all, at, number);
        else
            for (std::size_t i = 0; i < (kind == 1 ? 1 : 4) && at + i < all.size(); ++i)
                all[at + i] = static_cast<char>(number >> 8 * i);
    }
    file.Put(all + bytes.Rest());
}

void ExpectTheSameAgain(const FileType& type, const ReadFile& read, const RawLayout& layout) {
    const Scratch again("again");
    OutputFile output(again.Path());
    int number = 0;
    for (const std::string& frame : read.frames) {
        Picture picture(again.Path(), read.video.format, read.video.size);
        const char* next = frame.data();
        for (const tool::Plane& plane : picture.Planes())
            for (std::int64_t y = 0; y < plane.rows; ++y, next += plane.row_bytes)
                std::copy_n(next, plane.row_bytes, picture.Row(plane, y));
        type.write(output, read.video, picture, number++);
    }
    output.Commit();
    const ReadFile second = ReadAll(type, again.Path(), layout);
    Expect(second.frames == read.frames, "written and read again, it differs");
}

void FuzzReader(const FileType& type, Bytes& bytes) {
    const Scratch file("read");
    RawLayout layout;
    layout.max_pixels = 1 << 16;  // more would only take longer
    std::vector<std::string> written;
    const int way = bytes.Below(8);
    if (way < 2)
        file.Put(std::string(type.magic.empty() ? "" : type.magic[0]) + bytes.Rest());
    else
        written = WriteAny(bytes, type, file.Path(), &layout);
    if (way > 2) Damage(bytes, file);
    if (way > 2 && bytes.OneIn(8)) layout.size = {bytes.Between(1, 300), bytes.Between(1, 300)};
    ReadFile read;
    try {
        read = ReadAll(type, file.Path(), layout);
    } catch (const tool::Error& error) {
        Expect(std::string(error.what()).starts_with(file.Path() + ": ") && way != 2, error.what());
        return;
    }
    if (!GivesBackWhatItTakes(type)) return;
    if (way == 2) Expect(read.frames == written, "read again, it differs");
    if (type.name == "raw") layout.size = read.video.size, layout.format = read.video.format;
    if (!read.frames.empty()) ExpectTheSameAgain(type, read, layout);
}

constexpr const char* kTypes[] = {"y4m", "pnm", "pam", "bmp", "raw", "png", "jpeg"};

template <int kType>
void FuzzReaderOf(Bytes& bytes) {
    FuzzReader(*tool::FindFileType(kTypes[kType]), bytes);
}

}  // namespace

std::span<const Property> Properties() {
    constexpr int kTrials = 2000;
    static const std::vector<Property> properties = [] {
        std::vector<Property> all = {
            {kTypes[0], FuzzReaderOf<0>, kTrials}, {kTypes[1], FuzzReaderOf<1>, kTrials},
            {kTypes[2], FuzzReaderOf<2>, kTrials}, {kTypes[3], FuzzReaderOf<3>, kTrials},
            {kTypes[4], FuzzReaderOf<4>, kTrials}, {kTypes[5], FuzzReaderOf<5>, kTrials},
            {kTypes[6], FuzzReaderOf<6>, kTrials},
        };
        std::erase_if(all, [](const Property& type) { return !tool::FindFileType(type.name); });
        return all;
    }();
    return properties;
}

}  // namespace pxb::test
