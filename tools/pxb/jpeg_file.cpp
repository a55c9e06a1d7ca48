// JPEG through libjpeg. Damage that libjpeg would cover with grey is an Error; profiles and
// orientation are not applied, so that pixels stay where and what they are.
#include "jpeg_file.h"

#include <algorithm>
#include <cstdio>

#include <jpeglib.h>

#include "error.h"

namespace pxb::tool {
namespace {

// A block of 64 pixels takes at least one bit.
constexpr std::int64_t kMaxPixelsAByte = 512;
// Each takes the whole picture's time, and almost no bytes.
constexpr int kMaxScans = 500;

// libjpeg's error function must not return; the exception passes through its C frames, which have
// unwind tables on our platforms, and the structs below free its memory. Warnings, which say that
// data are corrupt, have negative levels.
template <class File>
struct Failures : jpeg_error_mgr {
    explicit Failures(File& named) : file(named) {
        jpeg_std_error(this);
        error_exit = Throw;
        emit_message = [](j_common_ptr codec, int level) {
            if (level < 0) Throw(codec);
        };
    }

    [[noreturn]] static void Throw(j_common_ptr codec) {
        char message[JMSG_LENGTH_MAX];
        codec->err->format_message(codec, message);
        throw Error(static_cast<Failures*>(codec->err)->file.name(), "JPEG data", "", message);
    }

    File& file;
};

struct Source : jpeg_source_mgr {
    explicit Source(InputFile& from) : jpeg_source_mgr{}, input(from) {
        init_source = [](j_decompress_ptr) {};
        fill_input_buffer = Fill;
        skip_input_data = [](j_decompress_ptr codec, long bytes) {
            auto& source = *static_cast<Source*>(codec->src);
            const auto skipped = static_cast<std::size_t>(std::max(bytes, 0L));
            const std::size_t ready = std::min(skipped, source.bytes_in_buffer);
            source.next_input_byte += ready;
            source.bytes_in_buffer -= ready;
            source.input.Skip(static_cast<std::int64_t>(skipped - ready), "JPEG data");
        };
        resync_to_restart = jpeg_resync_to_restart;
        term_source = [](j_decompress_ptr) {};
    }

    static boolean Fill(j_decompress_ptr codec) {
        auto& source = *static_cast<Source*>(codec->src);
        source.next_input_byte = source.buffer;
        source.bytes_in_buffer =
            source.input.ReadSome(source.buffer, sizeof source.buffer, "JPEG data");
        return TRUE;
    }

    InputFile& input;
    std::uint8_t buffer[4096];
};

struct Decoder : jpeg_decompress_struct {
    explicit Decoder(InputFile& input)
        : jpeg_decompress_struct{}, failures(input), source(input), monitor{} {
        err = &failures;
        jpeg_create_decompress(this);
        src = &source;
        progress = &monitor;
        monitor.progress_monitor = [](j_common_ptr codec) {
            auto& decoder = *static_cast<Decoder*>(reinterpret_cast<j_decompress_ptr>(codec));
            if (decoder.input_scan_number > kMaxScans)
                throw Error(decoder.source.input.name(), "scans",
                            std::to_string(decoder.input_scan_number), "are too many");
        };
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() { jpeg_destroy_decompress(this); }

    Failures<InputFile> failures;
    Source source;
    jpeg_progress_mgr monitor;
};

struct Target : jpeg_destination_mgr {
    explicit Target(OutputFile& to) : jpeg_destination_mgr{}, output(to) {
        init_destination = [](j_compress_ptr codec) { Empty(codec); };
        empty_output_buffer = [](j_compress_ptr codec) {
            auto& target = *static_cast<Target*>(codec->dest);
            target.output.Write(target.buffer, sizeof target.buffer);
            Empty(codec);
            return boolean{TRUE};
        };
        term_destination = [](j_compress_ptr codec) {
            auto& target = *static_cast<Target*>(codec->dest);
            target.output.Write(target.buffer, static_cast<std::int64_t>(sizeof target.buffer -
                                                                         target.free_in_buffer));
        };
    }

    static void Empty(j_compress_ptr codec) {
        auto& target = *static_cast<Target*>(codec->dest);
        target.next_output_byte = target.buffer;
        target.free_in_buffer = sizeof target.buffer;
    }

    OutputFile& output;
    std::uint8_t buffer[4096];
};

struct Encoder : jpeg_compress_struct {
    explicit Encoder(OutputFile& output)
        : jpeg_compress_struct{}, failures(output), target(output) {
        err = &failures;
        jpeg_create_compress(this);
        dest = &target;
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder() { jpeg_destroy_compress(this); }

    Failures<OutputFile> failures;
    Target target;
};

PixelFormat ChooseColors(Decoder& decoder, const InputFile& input) {
    switch (decoder.jpeg_color_space) {
        case JCS_GRAYSCALE:
            return PXB_RGB8;
        case JCS_YCbCr:
        case JCS_RGB:
            decoder.out_color_space = JCS_EXT_BGR;
            return PXB_RGB24;
        default:
            throw Error(input.name(), "components", std::to_string(decoder.num_components),
                        "only grey and colour pictures of three components are read");
    }
}

}  // namespace

Video ReadJpeg(InputFile& input, const RawLayout& layout, const FrameSink& sink) {
    Decoder decoder(input);
    jpeg_read_header(&decoder, TRUE);
    if (decoder.arith_code)
        throw Error(input.name(), "coding", "arithmetic", "only Huffman coding is read");
    const Video video{ChooseColors(decoder, input),
                      {static_cast<std::int32_t>(decoder.image_width),
                       static_cast<std::int32_t>(decoder.image_height)}};
    const auto [width, height] = video.size;
    CheckSize(input.name(), video.format, video.size, layout.max_pixels);
    input.Require(std::int64_t{width} * height / kMaxPixelsAByte -
                      static_cast<std::int64_t>(decoder.source.bytes_in_buffer),
                  "JPEG data");
    jpeg_start_decompress(&decoder);

    Picture picture(input.name(), video.format, video.size);
    for (std::int32_t y = 0; y < height; ++y) {
        JSAMPROW row = picture.Row(y);
        jpeg_read_scanlines(&decoder, &row, 1);
    }
    jpeg_finish_decompress(&decoder);
    RepeatEdges(picture);
    sink(video, picture, 0);
    return video;
}

void WriteJpeg(OutputFile& output, const Video& video, const Picture& picture, std::int64_t) {
    if (std::max(video.size.width, video.size.height) > JPEG_MAX_DIMENSION)
        throw Error(
            output.name(), "size", ToString(video.size),
            "JPEG pictures have at most " + std::to_string(JPEG_MAX_DIMENSION) + " pixels a side");
    Encoder encoder(output);
    encoder.image_width = static_cast<JDIMENSION>(video.size.width);
    encoder.image_height = static_cast<JDIMENSION>(video.size.height);
    encoder.input_components = picture.image().bitsPerPixel / 8;
    encoder.in_color_space = video.format == PXB_RGB8    ? JCS_GRAYSCALE
                             : video.format == PXB_RGB24 ? JCS_EXT_BGR
                                                         : JCS_EXT_BGRX;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, video.quality, TRUE);
    encoder.optimize_coding = TRUE;
    jpeg_start_compress(&encoder, TRUE);
    for (std::int32_t y = 0; y < video.size.height; ++y) {
        JSAMPROW row = picture.Row(y);
        jpeg_write_scanlines(&encoder, &row, 1);
    }
    jpeg_finish_compress(&encoder);
}

}  // namespace pxb::tool
