// What the program can do, one function a command. Failures are Errors.
#pragma once
#include <optional>
#include <string>

#include "file_types.h"
#include "flip.h"
#include "geometry.h"
#include "resize.h"
#include "rotate.h"

namespace pxb::tool {

// Paths; "-" is standard input or output, and a pattern such as out-%04d.png a series of files, one
// a frame. `type` names the output's type where its extension does
// not.
struct OutputOptions {
    std::string path, type;
    std::optional<PixelFormat> format;
    bool unpadded = false;            // see Convert
    std::optional<int> quality = {};  // of a JPEG picture, 1 to 100
};

struct InputOptions {
    std::string path;
    RawLayout layout;
    std::optional<std::int64_t> frame;  // this one alone
    int threads = 1;                    // that work on frames, at most MostThreads()
};

// A picture to be blended over others.
struct OverlayOptions {
    std::string path;
    std::string alpha_path;    // of its alpha, a grey picture; empty: its own alpha
    Point at = {};             // where its top left pixel goes
    std::optional<Rect> part;  // of it; otherwise all
    std::int64_t max_pixels = kDefaultMaxPixels;
};

void PaintTestCards(const OutputOptions& to, Size size, int frames);
std::string Describe(const InputOptions& from);
void ConvertFile(const InputOptions& from, const OutputOptions& to);
void ExtractChannel(const InputOptions& from, const OutputOptions& to, int channel);
void BlendOver(const InputOptions& background, const OverlayOptions& overlay,
               const OutputOptions& to);
void FlipFile(const InputOptions& from, const OutputOptions& to, Mirror mirror,
              const std::optional<Rect>& part);
void ResizeFile(const InputOptions& from, const OutputOptions& to, const Scaling& scaling);
void RotateFile(const InputOptions& from, const OutputOptions& to, const Rotation& rotation);

}  // namespace pxb::tool
