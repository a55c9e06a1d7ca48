// PNG through libpng. Palettes, fewer than 8 bits and transparent colors are expanded, 16 bits
// scaled to 8; gamma and color profiles are not applied, so that bytes stay what they are.
#include "png_file.h"

#include <png.h>

#include "error.h"

namespace pxb::tool {
namespace {

constexpr std::int64_t kMaxDeflateRatio = 1032;  // 258 bytes in two bits

// libpng's error function must not return; the exception passes through its C frames, which have
// unwind tables on all our platforms, and the structs below free its memory.
template <class File>
[[noreturn]] void ThrowError(png_structp png, png_const_charp message) {
    throw Error(static_cast<File*>(png_get_error_ptr(png))->name(), "PNG data", "", message);
}

void IgnoreWarning(png_structp, png_const_charp) {}

struct Reader {
    explicit Reader(InputFile& input)
        : png(png_create_read_struct(PNG_LIBPNG_VER_STRING, &input, ThrowError<InputFile>,
                                     IgnoreWarning)),
          info(png_create_info_struct(png)) {
        png_set_read_fn(png, &input, [](png_structp p, png_bytep to, png_size_t bytes) {
            static_cast<InputFile*>(png_get_io_ptr(p))
                ->Read(to, static_cast<std::int64_t>(bytes), "PNG data");
        });
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }

    png_structp png;
    png_infop info;
};

struct Writer {
    explicit Writer(OutputFile& output)
        : png(png_create_write_struct(PNG_LIBPNG_VER_STRING, &output, ThrowError<OutputFile>,
                                      IgnoreWarning)),
          info(png_create_info_struct(png)) {
        const auto write = [](png_structp p, png_bytep from, png_size_t bytes) {
            static_cast<OutputFile*>(png_get_io_ptr(p))
                ->Write(from, static_cast<std::int64_t>(bytes));
        };
        png_set_write_fn(png, &output, write, [](png_structp) {});
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { png_destroy_write_struct(&png, &info); }

    png_structp png;
    png_infop info;
};

// Asks for 8-bit grey, B G R or B G R A, whatever the file holds.
PixelFormat ChooseTransforms(const Reader& reader) {
    const int type = png_get_color_type(reader.png, reader.info);
    const bool alpha = (type & PNG_COLOR_MASK_ALPHA) != 0 ||
                       png_get_valid(reader.png, reader.info, PNG_INFO_tRNS) != 0;
    const bool color = (type & PNG_COLOR_MASK_COLOR) != 0 || alpha;
    png_set_expand(reader.png);
    png_set_scale_16(reader.png);
    if (color) png_set_gray_to_rgb(reader.png);
    png_set_bgr(reader.png);
    if (alpha) return PXB_RGB32;
    return color ? PXB_RGB24 : PXB_RGB8;
}

}  // namespace

Video ReadPng(InputFile& input, const RawLayout& layout, const FrameSink& sink) {
    Reader reader(input);
    png_set_user_limits(reader.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    // Texts and profiles are not even unpacked.
    png_set_keep_unknown_chunks(reader.png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_read_info(reader.png, reader.info);
    const Size size = {static_cast<std::int32_t>(png_get_image_width(reader.png, reader.info)),
                       static_cast<std::int32_t>(png_get_image_height(reader.png, reader.info))};
    const PixelFormat format = ChooseTransforms(reader);
    CheckSize(input.name(), format, size, layout.max_pixels);
    const auto packed_row = static_cast<std::int64_t>(png_get_rowbytes(reader.png, reader.info));
    input.Require(packed_row * size.height / kMaxDeflateRatio, "PNG data");
    const int passes = png_set_interlace_handling(reader.png);
    png_read_update_info(reader.png, reader.info);

    Picture picture(input.name(), format, size);
    for (int pass = 0; pass < passes; ++pass)
        for (std::int32_t y = 0; y < size.height; ++y)
            png_read_row(reader.png, picture.Row(y), nullptr);
    png_read_end(reader.png, nullptr);
    RepeatEdges(picture);
    Video video{format, size};
    video.alpha = format == PXB_RGB32;
    sink(video, picture, 0);
    return video;
}

void WritePng(OutputFile& output, const Video& video, const Picture& picture, std::int64_t) {
    const bool alpha = HasAlpha(video, picture);
    const int color = alpha                      ? PNG_COLOR_TYPE_RGB_ALPHA
                      : video.format == PXB_RGB8 ? PNG_COLOR_TYPE_GRAY
                                                 : PNG_COLOR_TYPE_RGB;
    Writer writer(output);
    png_set_IHDR(writer.png, writer.info, static_cast<png_uint_32>(video.size.width),
                 static_cast<png_uint_32>(video.size.height), 8, color, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(writer.png, writer.info);
    png_set_bgr(writer.png);
    if (video.format == PXB_RGB32 && !alpha) png_set_filler(writer.png, 0, PNG_FILLER_AFTER);
    for (std::int32_t y = 0; y < video.size.height; ++y) png_write_row(writer.png, picture.Row(y));
    png_write_end(writer.png, nullptr);
}

}  // namespace pxb::tool
