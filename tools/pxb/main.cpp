// pxb: arguments in, one command, one line on standard error and status 2 where something is wrong.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <sstream>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "convert.h"
#include "error.h"
#include "frame_loop.h"
#include "geometry.h"
#include "nearest.h"
#include "numbers.h"
#include "printable.h"
#include "program_arguments.h"

namespace pxb::tool {
namespace {

constexpr int kFailed = 2;

// One line, whatever file names and headers contain.
int Complain(std::string_view message) {
    std::fprintf(stderr, "pxb: %s\n", Printable(message).c_str());
    return kFailed;
}

constexpr char kExamples[] =
    R"(The extension of a file tells its type, else the first bytes do. `-` is standard input or output.
A name with %d, or %04d for four digits, means a series of files, one a frame. They are numbered
without gaps, new ones from 0 on, and each appears as soon as it is complete.

Examples:
  pxb testcard card.y4m                          a test card, 768x576, 4:2:0
  pxb convert card.y4m card.png                  the same as a picture, through the library
  pxb convert card.y4m card-%04d.png             one picture a frame
  pxb info card.y4m                              its format, planes and strides
  pxb convert shot.yuy2 shot.png --size 600x400  raw frames need their size
  pxb convert photo.png - --type bmp --to RGB32 | pxb convert - photo.nv12
  pxb channel photo.png grey.png --channel 1     one channel as a grey picture
  pxb blend card.y4m logo.png out.y4m --at 16,16 a logo over every frame
  pxb flip card.y4m back.y4m --horizontal        every frame mirrored left to right
  pxb resize card.y4m small.y4m --size 384x288 --mode shrink
  pxb rotate photo.png turned.png --angle 30     by any angle, counter-clockwise)";

std::string Examples() {
    std::string text = "Files:";
    for (const FileType& type : FileTypes()) {
        text.append("\n  ").append(type.name).append(8 - type.name.size(), ' ');
        text.append(type.description);
    }
    text.append("\n").append(kExamples);
    if (FindFileType("png")) return text;
    for (std::size_t at = 0; (at = text.find(".png", at)) != std::string::npos;)
        text.replace(at, 4, ".bmp");
    return text;
}

constexpr char kAboutFiles[] =
    R"(Pixel formats by code: 1 RGB24 (bytes B G R), 2 RGB32 (B G R X), 3 YV12 (planes Y V U),
4 YUY2 (bytes Y0 U Y1 V), 5 I420 (planes Y U V), 6 RGB8 (grey), 7 YUV422 (planes Y U V,
chroma of half width), 8 AYUV32 (bytes A Y U V), 9 NV12 (planes Y and U V pairs).

Raw frames are rows without gaps, planes without gaps, frames without gaps. RGB24 rows hold 3 bytes
a pixel, RGB32 and AYUV32 4, RGB8 1, YUY2 4 for two pixels; chroma planes have (width + 1) / 2
samples a row and in 4:2:0 (height + 1) / 2 rows. The extension may name the format: shot.nv12.)";

constexpr char kAboutModes[] =
    R"(Modes: nearest takes the pixel under the centre of the new one; bilinear and bilinear-5 blend the
two by two pixels around it; faded is bilinear with borders that fade to black where the picture does
not shrink; shrink weighs four by four pixels, and is for shrinking in both directions; half and
half-faded are bilinear and faded as long as the picture does not shrink to half or less in both
directions. Where a mode has no way for a format, nothing would be written, and the tool refuses:
shrink that does not shrink, half and half-faded that do, both in RGB24 and RGB32. Grey and 4:2:0
pictures have them all; YUY2 is always bilinear. RGB24, RGB32, RGB8, YV12, I420 and YUY2 scale.

Rectangles are left, top, right and bottom in pixels, right and bottom exclusive.)";

// Asked of the library itself.
std::string ConversionHelp() {
    std::string text = "Conversions of this library:";
    for (const PixelFormat from : kAllFormats) {
        text.append("\n  ").append(FormatName(from)) += " to";
        for (const PixelFormat to : kAllFormats)
            if (to != from && Converts(from, to)) text.append(" ").append(FormatName(to));
    }
    return text;
}

constexpr char kAboutTurns[] =
    R"(RGB24 and RGB32 pictures turn counter-clockwise, as seen on the screen, by any angle, negative
ones too; pixels between others are interpolated, and what no pixel falls on is black. 4:2:0 pictures
(YV12, I420) turn clockwise, the other way: the library does so, and programs depend on it. They turn
by 90, 180 and 270 degrees alone, and are copied exactly. Other formats have to be converted first.

Only 90, 180 and 270 are exact; 450 is interpolated like 30. Without --size OUT has the size of IN,
with width and height exchanged at quarter turns.)";

PixelFormat ParseFormat(std::string_view option, const std::string& text) {
    if (const std::optional<PixelFormat> format = FindFormatOrCode(text)) return *format;
    throw Error("", option, text, "is not one of " + FormatNames() + ", nor a code from 1 to 9");
}

// Whole numbers. The parser's own checks would show the range of a double.
CLI::Validator InRange(std::int64_t least, std::int64_t most) {
    const std::string range = std::to_string(least) + " to " + std::to_string(most);
    return {[=](std::string& text) {
                if (ParseNumber(text, least, most)) return std::string();
                return text + " is not a whole number from " + range;
            },
            ""};
}

std::optional<Range> ParseRange(std::string_view option, const std::string& text) {
    if (text.empty()) return std::nullopt;
    if (text == "full") return Range::kFull;
    if (text == "limited") return Range::kLimited;
    throw Error("", option, text, "is not full or limited");
}

// The program's options as text, shared by the commands; each command offers some of them.
struct Arguments {
    std::string input, output, size, format, to, type, rect, new_size, mode, from_rect, to_rect;
    std::string range, overlay, alpha, at = "0,0";
    std::vector<std::string> inputs;
    std::optional<std::int64_t> frame;
    std::optional<int> quality;
    std::int64_t max_pixels = kDefaultMaxPixels;
    int frames = 1, channel = 0, threads = UsualThreads();
    std::int32_t angle = 0;
    int status = 0;  // of the program
    bool horizontal = false, vertical = false, unpadded = false;

    void AddInput(CLI::App& command, const std::string& name = "IN",
                  const std::string& size_name = "--size") {
        command.add_option(name, input, "file to read, or -")->required();
        AddReading(command, size_name);
    }
    void AddReading(CLI::App& command, const std::string& size_name) {
        command.add_option(size_name, size, "raw frames: their size")->type_name("WxH");
        command.add_option("--format", format, "raw frames: their format")->type_name("NAME");
        command
            .add_option("--max-pixels", max_pixels,
                        "refuse files that claim more pixels a frame; else 268435456")
            ->type_name("N")
            ->check(InRange(1, INT64_MAX));
        command.add_option("--range", range, "Y4M: full or limited, whatever its header says")
            ->type_name("NAME");
    }
    void AddOutput(CLI::App& command) {
        command.add_option("OUT", output, "file to write, or -")->required();
        command.add_option("--type", type, "type of OUT: " + FileTypeNames())->type_name("NAME");
        if (!FindFileType("jpeg")) return;
        command.add_option("--quality", quality, "of a JPEG picture, 1 to 100; else 90")
            ->type_name("N")
            ->check(InRange(1, 100));
    }
    void AddFrame(CLI::App& command) {
        command.add_option("--frame", frame, "this frame alone, counted from 0")
            ->type_name("N")
            ->check(InRange(0, INT64_MAX));
    }
    void AddThreads(CLI::App& command) {
        const int most = MostThreads();
        command
            .add_option("--threads", threads,
                        most == 1 ? "always 1: this build has no others"
                                  : "that work on frames; else one for each processor")
            ->type_name("N")
            ->check(InRange(1, most));
    }
    void AddTo(CLI::App& command, const std::string& otherwise) {
        command.add_option("--to", to, "format of OUT; " + otherwise)->type_name("NAME");
    }

    InputOptions Input(std::string_view size_name = "--size") const {
        InputOptions options{input, {}, frame, threads};
        options.layout.size_option = size_name;
        options.layout.max_pixels = max_pixels;
        options.layout.range = ParseRange("--range", range);
        if (!size.empty()) options.layout.size = ParseSize(size_name, size);
        if (!format.empty()) options.layout.format = ParseFormat("--format", format);
        return options;
    }
    OverlayOptions Overlay() const {
        OverlayOptions options{overlay, alpha, ParsePoint("--at", at), {}, max_pixels};
        if (!from_rect.empty()) options.part = ParseRect("--from-rect", from_rect);
        return options;
    }
    std::optional<Rect> Part() const {
        if (rect.empty()) return std::nullopt;
        return ParseRect("--rect", rect);
    }
    OutputOptions Output() const {
        OutputOptions options{output, type, {}, unpadded, quality};
        if (!to.empty()) options.format = ParseFormat("--to", to);
        return options;
    }
    Scaling NewSize() const {
        Scaling scaling{ParseSize("--size", new_size), ParseMode("--mode", mode), {}, {}};
        if (!from_rect.empty()) scaling.from = ParseRect("--from-rect", from_rect);
        if (!to_rect.empty()) scaling.to = ParseRect("--to-rect", to_rect);
        return scaling;
    }
    Rotation Turn() const {
        Rotation rotation{angle, {}};
        if (!new_size.empty()) rotation.size = ParseSize("--size", new_size);
        return rotation;
    }
};

void Print(const std::string& text) {
    OutputFile output("-");
    output.Write(text);
    output.Commit();
}

// The commands. Each adds its options and says what is done with them.

constexpr char kElseThatOfIn[] = "else that of IN if OUT can hold it, else I420 or RGB24";

CLI::App& AddFrameCommand(CLI::App& app, Arguments& arguments, const char* name, const char* about,
                          const char* raw_size = "--size") {
    CLI::App& command = *app.add_subcommand(name, about);
    arguments.AddInput(command, "IN", raw_size);
    arguments.AddOutput(command);
    arguments.AddFrame(command);
    arguments.AddThreads(command);
    command.footer(kAboutFiles);
    return command;
}

void AddTestcard(CLI::App& app, Arguments& arguments) {
    CLI::App& testcard = *app.add_subcommand("testcard", "Paint a test card");
    arguments.AddOutput(testcard);
    testcard.add_option("--size", arguments.size, "size of the card; else 768x576")
        ->type_name("WxH");
    testcard.add_option("--frames", arguments.frames, "frames of a moving card")
        ->type_name("N")
        ->check(InRange(1, 100000));
    arguments.AddTo(testcard, "else I420, or RGB24 where OUT is a picture");
    testcard.callback([&arguments] {
        const std::string& size = arguments.size;
        PaintTestCards(arguments.Output(), ParseSize("--size", size.empty() ? "768x576" : size),
                       arguments.frames);
    });
}

void AddInfo(CLI::App& app, Arguments& arguments) {
    CLI::App& info = *app.add_subcommand("info", "Say what a file holds");
    info.add_option("IN", arguments.inputs, "files to read, or -")->required();
    arguments.AddReading(info, "--size");
    info.footer(kAboutFiles);
    info.callback([&arguments] {
        std::string gap;
        for (const std::string& input : arguments.inputs) {
            arguments.input = input;
            try {
                Print(gap + Describe(arguments.Input()));
                gap = "\n";
            } catch (const Error& error) {
                if (arguments.inputs.size() == 1) throw;
                arguments.status = Complain(error.what());
            }
        }
    });
}

void AddConvert(CLI::App& app, Arguments& arguments) {
    CLI::App& convert =
        AddFrameCommand(app, arguments, "convert", "Convert a file, one library call a frame");
    arguments.AddTo(convert, kElseThatOfIn);
    convert.add_flag("--unpadded", arguments.unpadded,
                     "tell the library of odd widths as they are, and see its rows drift");
    convert.footer([] { return std::string(kAboutFiles) + "\n\n" + ConversionHelp(); });
    convert.callback([&arguments] { ConvertFile(arguments.Input(), arguments.Output()); });
}

void AddChannel(CLI::App& app, Arguments& arguments) {
    CLI::App& channel =
        AddFrameCommand(app, arguments, "channel", "Extract one channel as a grey picture");
    channel
        .add_option("--channel", arguments.channel,
                    "1 alpha of RGB32, grey of RGB24; 2 red, 3 green, 4 blue of RGB32; 5 luma")
        ->type_name("N")
        ->required()
        ->check(InRange(1, 5));
    channel.callback(
        [&arguments] { ExtractChannel(arguments.Input(), arguments.Output(), arguments.channel); });
}

void AddResize(CLI::App& app, Arguments& arguments) {
    CLI::App& resize = AddFrameCommand(app, arguments, "resize",
                                       "Scale a file, one library call a frame", "--in-size");
    resize.add_option("--size", arguments.new_size, "size of OUT")->type_name("WxH")->required();
    resize.add_option("--mode", arguments.mode, ModeNames())->type_name("MODE")->required();
    resize.add_option("--from-rect", arguments.from_rect, "this part of IN; else all of it")
        ->type_name("L,T,R,B");
    resize
        .add_option("--to-rect", arguments.to_rect,
                    "onto this part of OUT, the rest of which is black; else onto all of it")
        ->type_name("L,T,R,B");
    arguments.AddTo(resize, kElseThatOfIn);
    resize.footer(kAboutModes + std::string("\n\n") + kAboutFiles);
    resize.callback([&arguments] {
        ResizeFile(arguments.Input("--in-size"), arguments.Output(), arguments.NewSize());
    });
}

void AddRotate(CLI::App& app, Arguments& arguments) {
    CLI::App& rotate = AddFrameCommand(app, arguments, "rotate",
                                       "Turn a file, one library call a frame", "--in-size");
    rotate.add_option("--angle", arguments.angle, "degrees, a whole number")
        ->type_name("DEGREES")
        ->check(InRange(INT32_MIN, INT32_MAX))
        ->required();
    rotate.add_option("--size", arguments.new_size, "size of OUT")->type_name("WxH");
    arguments.AddTo(rotate, kElseThatOfIn);
    rotate.footer(kAboutTurns + std::string("\n\n") + kAboutFiles);
    rotate.callback([&arguments] {
        RotateFile(arguments.Input("--in-size"), arguments.Output(), arguments.Turn());
    });
}

void AddFlip(CLI::App& app, Arguments& arguments) {
    CLI::App& flip = AddFrameCommand(app, arguments, "flip", "Mirror pictures, or a part of each");
    CLI::Option_group& mirror = *flip.add_option_group("Mirrors");
    mirror.add_flag("--horizontal", arguments.horizontal, "left to right");
    mirror.add_flag("--vertical", arguments.vertical, "top to bottom");
    mirror.require_option(1);
    flip.add_option("--rect", arguments.rect, "this part alone; right and bottom exclusive")
        ->type_name("L,T,R,B");
    arguments.AddTo(flip, kElseThatOfIn);
    flip.callback([&arguments] {
        FlipFile(arguments.Input(), arguments.Output(),
                 arguments.horizontal ? Mirror::kHorizontal : Mirror::kVertical, arguments.Part());
    });
}

void AddBlend(CLI::App& app, Arguments& arguments) {
    CLI::App& blend = *app.add_subcommand("blend", "Blend a picture over all frames of a file");
    arguments.AddInput(blend, "BACKGROUND");
    blend.add_option("OVERLAY", arguments.overlay, "picture to lay over them, or -")->required();
    arguments.AddOutput(blend);
    blend
        .add_option("--alpha", arguments.alpha, "grey picture, the alpha of OVERLAY; else its own")
        ->type_name("MASK");
    blend.add_option("--at", arguments.at, "where the top left pixel goes; else 0,0")
        ->type_name("X,Y");
    blend.add_option("--from-rect", arguments.from_rect, "this part of OVERLAY alone")
        ->type_name("L,T,R,B");
    arguments.AddTo(blend, "else that of BACKGROUND if OUT can hold it, else I420 or RGB24");
    arguments.AddFrame(blend);
    arguments.AddThreads(blend);
    blend.footer(kAboutFiles);
    blend.callback(
        [&arguments] { BlendOver(arguments.Input(), arguments.Overlay(), arguments.Output()); });
}

void CheckCommand(const CLI::App& app, const std::string& word) {
    if (word.starts_with("-")) return;
    std::vector<std::string> commands;
    for (const CLI::App* command : app.get_subcommands({})) commands.push_back(command->get_name());
    if (std::ranges::count(commands, word) == 0)
        throw Error("", "command", word,
                    "is not known; did you mean " + Nearest(word, commands) + "? (pxb --help)");
}

int Run(const std::vector<std::string>& words) {
    std::vector<const char*> pointers;
    pointers.reserve(words.size());
    for (const std::string& word : words) pointers.push_back(word.c_str());
    Arguments arguments;
    CLI::App app("pxb: looks at what PxbLib does with pictures.", "pxb");
    app.set_version_flag("--version", "pxb " PXB_VERSION);
    app.require_subcommand(1);
    for (const auto add :
         {AddTestcard, AddInfo, AddConvert, AddChannel, AddResize, AddRotate, AddFlip, AddBlend})
        add(app, arguments);
    app.footer(Examples());  // last: commands would inherit it

    if (words.size() < 2) {
        Print(app.help());
        return 0;
    }
    CheckCommand(app, words[1]);
    try {
        app.parse(static_cast<int>(pointers.size()), pointers.data());
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) throw;
        std::ostringstream text;
        app.exit(error, text, text);
        Print(text.str());
    }
    return arguments.status;
}

}  // namespace
}  // namespace pxb::tool

int main(int argc, char** argv) {
#if !defined(_WIN32)
    // A closed pipe and a limit of file sizes become failed writes, which are reported.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    try {
        return pxb::tool::Run(pxb::tool::ProgramArguments(argc, argv));
    } catch (const std::bad_alloc&) {
        return pxb::tool::Complain("memory: there is not enough");
    } catch (const CLI::Error& error) {
        return pxb::tool::Complain(std::string(error.what()) + " (pxb --help tells more)");
    } catch (const std::exception& error) {
        return pxb::tool::Complain(error.what());
    }
}
