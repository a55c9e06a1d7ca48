/* PxbLib: raw camera, video and still frames in memory.
 *
 * Eighteen functions over plain records fill, convert, scale, rotate, mirror and blend images in
 * nine pixel formats. The library opens no files, keeps no log and starts no threads. Colour
 * arithmetic is ITU-R BT.601 in studio range: luma 16 to 235, chroma 16 to 240 around 128.
 *
 * A program
 *
 *     #include <PxbLib.h>
 *     #include <stdio.h>
 *
 *     static uint8_t camera_bytes[640 * 480 * 3 / 2];  // one frame: Y, then U, then V
 *
 *     int main(void) {
 *         ImageBuffer frame = {0}, screen = {0};
 *         frame.data = camera_bytes;                   // memory of the caller, who fills all fields
 *         frame.format = PXB_I420;
 *         frame.bitsPerPixel = 12;
 *         frame.width = frame.stride = 640;
 *         frame.height = 480;
 *         PxbFillColor(&frame, 0x0000FF);              // red, in place of a camera
 *
 *         screen.format = PXB_RGB32;                   // memory of the library
 *         screen.width = 640;
 *         screen.height = 480;
 *         int32_t result = PxbNew(&screen, 0);
 *         if (result == PXB_SUCCESS) result = PxbColorSpaceConv(&screen, &frame);
 *         if (result == PXB_SUCCESS) {                 // draw screen.height rows from screen.data on
 *             const uint8_t* pixel = PxbPixelsRGB32(&screen, 320, 240);
 *             printf("blue %d, green %d, red %d\n", pixel[0], pixel[1], pixel[2]);
 *         }
 *         PxbDelete(&screen);
 *         return result;
 *     }
 *
 * Formats
 *
 *     code  name    bits  size rounding      stride (bytes)        planes, bytes in memory order
 *     1     RGB24   24    none               3 * width, up to a    one: B G R
 *                                            multiple of 4
 *     2     RGB32   32    none               4 * width             one: B G R X (X: 0, or alpha)
 *     3     YV12    12    both up to even    width                 three: Y, then V, then U
 *     4     YUY2    16    width up to even   2 * width             one: Y0 U Y1 V for two pixels
 *     5     I420    12    both up to even    width                 three: Y, then U, then V
 *     6     RGB8    8     none               width, up to a        one: grey or alpha
 *                                            multiple of 4
 *     7     YUV422  16    width up to even   2 * width             see below
 *     8     AYUV32  32    none               4 * width             one: A Y U V
 *     9     NV12    12    both up to even    width                 two: Y, then U V pairs
 *
 * The table gives what PxbNew stores. An image described by the caller may have any stride at least
 * as large; interleaved formats (one plane) may also be stored bottom row first, with `data` at the
 * last row in memory and a negative stride.
 *
 * YV12, I420 and NV12 hold one chroma sample of each kind for every 2 x 2 block of pixels. Chroma
 * rows of YV12 and I420 are stride / 2 bytes apart, those of NV12 stride bytes. The planes follow
 * one another:
 *
 *     luma           data                            stride * height bytes
 *     first chroma   data + stride * height          stride * height / 4 bytes (NV12: / 2)
 *     second chroma  first + stride * height / 4     stride * height / 4 bytes
 *
 * For instance a 5 x 3 I420 image becomes 6 x 4 with stride 6: 24 bytes of Y at offset 0, 6 bytes
 * of U at offset 24 and 6 bytes of V at offset 30, 36 bytes in all; the chroma of pixel (4, 3) is
 * sample 2 of chroma row 1, at offset 24 + 1 * 3 + 2 = 29 for U and 35 for V.
 *
 * YUV422 has two readings of its stride * height bytes. PxbFillColor paints packed rows of U Y0 V
 * Y1; PxbColorSpaceConv reads and writes three tight planes, Y of width * height bytes, then U and
 * V of (width / 2) * height bytes each. Both readings are kept because callers depend on either.
 *
 * Memory
 *
 * The caller owns every ImageBuffer record that it passes. Pixel memory comes either from PxbNew,
 * and goes back with PxbDelete, or from the caller, who then fills all fields and never passes the
 * record to PxbDelete. Pixels from PxbNew start at a multiple of 16 bytes. The caller vouches that
 * `data`, `stride`, `width` and `height` describe memory that exists; no function can check this.
 * Images with a negative width or height, and planar images with a negative stride, have no pixels:
 * nothing is touched. Offsets are computed with more than 32 bits, so images beyond 2 GiB work
 * where memory allows.
 *
 * An image may carry an alpha companion: an RGB8 image of the same width and height, pointed to by
 * `alpha`. PxbNew makes one on request and PxbDelete releases it. Each function says whether it
 * looks at companions.
 *
 * Images that one call reads and images that it writes must not share memory, unless the text of
 * the function says otherwise: the bytes would depend on the processor.
 *
 * Threads
 *
 * Calls may run on any threads at once as long as none of them writes an image that another reads
 * or writes. Nothing in the library changes after it has been loaded.
 *
 * Results
 *
 * Every function but the accessors returns a ResultCode. Checks run in the order in which each
 * function lists its results, and the first that fails decides. No function tests record pointers
 * for null: a pointer parameter must be valid unless its text says "may be null".
 *
 * Versions
 *
 * The header is C89 with <stdint.h>, and C++98. Programs built with it run with every later library
 * of the same PXB_VERSION_MAJOR, which finds for them the same functions, records, codes, results
 * and bytes. A new PXB_VERSION_MINOR may add functions, a new PXB_VERSION_PATCH does not.
 */
#ifndef PXBLIB_H
#define PXBLIB_H

#define PXB_VERSION_MAJOR 1
#define PXB_VERSION_MINOR 0
#define PXB_VERSION_PATCH 0

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#define PXB_CALL __cdecl
#define PXB_API /* exported by name; the import library resolves plain declarations */
#else
#define PXB_CALL
#define PXB_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef enum PixelFormat {
    PXB_RGB24 = 1,
    PXB_RGB32 = 2,
    PXB_YV12 = 3,
    PXB_YUY2 = 4,
    PXB_I420 = 5,
    PXB_RGB8 = 6,
    PXB_YUV422 = 7,
    PXB_AYUV32 = 8,
    PXB_NV12 = 9
} PixelFormat;

typedef enum ResultCode {
    PXB_SUCCESS = 0,      /* done; also for an empty rectangle */
    PXB_UNSUPPORTED = 1,  /* a valid format, or pair, that this function does not handle */
    PXB_BAD_ARGUMENT = 2, /* null data, unknown format, bad rectangle, mismatched formats */
    PXB_FAILURE = 3       /* memory could not be allocated, or a kernel could not do its work */
} ResultCode;

/* An image: seven words. PxbNew fills in what it derives; see each field. */
typedef struct ImageBuffer {
    uint8_t* data;             /* first byte of the top row; null: the record has no pixels */
    int32_t bitsPerPixel;      /* 24, 32, 12, 16 or 8, as in the table of formats; by PxbNew */
    int32_t stride;            /* bytes from one row of the first plane to the next; by PxbNew */
    int32_t width;             /* pixels; rounded by PxbNew */
    int32_t height;            /* rows; rounded by PxbNew */
    int32_t format;            /* a PixelFormat */
    struct ImageBuffer* alpha; /* the alpha companion; may be null */
} ImageBuffer;

/* A rectangle in pixels of its image; right and bottom are exclusive. Where a function takes a
 * pointer to a Rect, null means the whole image. */
typedef struct Rect {
    int32_t left;   /* 0 to right */
    int32_t top;    /* 0 to bottom */
    int32_t right;  /* left to the width of the image */
    int32_t bottom; /* top to the height of the image */
} Rect;

/* Addresses of the three samples of one pixel. */
typedef struct PlanePointers {
    uint8_t* y;
    uint8_t* u;
    uint8_t* v;
} PlanePointers;

/* ---- Buffers ---- */

/* Allocates the pixels of `image` and paints them black.
 *
 * Before the call set `format`, `width`, `height`, and set `data` and `alpha` to null: what they
 * point to is not released. The call writes `data`, `bitsPerPixel`, `stride`, and the rounded
 * `width` and `height`. With `withAlpha` other than 0 it also writes `alpha`: a new RGB8 companion
 * of the same size, all bytes 0, or null if there is no memory for the record. A companion without
 * memory for its pixels stays, with null `data`; neither case changes the result. AYUV32 and NV12
 * pixels are left as the allocator gave them.
 *
 * PXB_FAILURE       `data` is null at the end: there is no memory for the pixels, or their size is
 *                   negative or above 2^31 - 1 bytes; or `format` is unknown and the caller left
 *                   `data` null
 * PXB_BAD_ARGUMENT  `format` is not 1 to 9 and `data` was not null; `data` is kept (a requested
 *                   companion is made even so)
 * PXB_SUCCESS       otherwise; a size of 0 bytes gives a non-null `data` */
PXB_API int32_t PXB_CALL PxbNew(ImageBuffer* image, int32_t withAlpha);

/* Releases the pixels of `image` and its companion with the companion's pixels, and sets `data` and
 * `alpha` to null. The other fields stay, so that the record can go to PxbNew again; a second call
 * does nothing. Both must have come from PxbNew. A companion's own companion is not followed.
 *
 * PXB_SUCCESS       always */
PXB_API int32_t PXB_CALL PxbDelete(ImageBuffer* image);

/* Paints `image` with one colour.
 *
 * `color` is 0x00BBGGRR: red in bits 0 to 7, green in 8 to 15, blue in 16 to 23; the top byte is
 * ignored. RGB formats get the bytes as they are (RGB32: fourth byte 0), RGB8 gets (R + G + B) / 3,
 * a plain average, and the YUV formats get, in double precision, clamped to 0..255 and truncated
 * (ITU-R BT.601, studio range),
 *
 *     Y = 0.504 G + 0.257 R + 0.098 B + 16
 *     U = 0.439 B - (0.291 G + 0.148 R) + 128
 *     V = 0.439 R - 0.368 G - 0.071 B + 128
 *
 * The caller's floating-point environment (rounding, precision, exception masks, flags) does not
 * matter and is given back. Padding at the ends of rows keeps its bytes, except that it is painted
 * in YV12 and I420 and set to 0 in RGB8. YUY2 and YUV422 of odd width keep their last column. The
 * companion is not touched.
 *
 * PXB_BAD_ARGUMENT  `data` is null; or `format` is not 1 to 7
 * PXB_SUCCESS       otherwise */
PXB_API int32_t PXB_CALL PxbFillColor(ImageBuffer* image, uint32_t color);

/* ---- Accessors: the address of pixel (x, y) ----
 *
 * Pure arithmetic on `data` (D), `stride` (S) and `height` (H), with divisions that truncate toward
 * zero. The record's format and the coordinates are not checked: a pixel outside gives an address
 * outside. */

/* D + y S + 3 x, D + y S + 4 x, D + y S + x. */
PXB_API uint8_t* PXB_CALL PxbPixelsRGB24(const ImageBuffer* image, int32_t x, int32_t y);
PXB_API uint8_t* PXB_CALL PxbPixelsRGB32(const ImageBuffer* image, int32_t x, int32_t y);
PXB_API uint8_t* PXB_CALL PxbPixelsRGB8(const ImageBuffer* image, int32_t x, int32_t y);

/* y = D + y S + x / 2, and u, v = first byte of their plane + (y S) / 4 + x / 2. Note the half x of
 * luma and that a chroma row starts at (y S) / 4, a half row further for odd y: callers depend on
 * both. */
PXB_API PlanePointers PXB_CALL PxbPixelsYV12(const ImageBuffer* image, int32_t x, int32_t y);
PXB_API PlanePointers PXB_CALL PxbPixelsI420(const ImageBuffer* image, int32_t x, int32_t y);

/* y = D + y S + 2 x, u = D + y S + 4 (x / 2) + 1, v = u + 2. */
PXB_API PlanePointers PXB_CALL PxbPixelsYUY2(const ImageBuffer* image, int32_t x, int32_t y);

/* Three null pointers, always; `image` is not read and may be null. */
PXB_API PlanePointers PXB_CALL PxbPixelsYUV422(const ImageBuffer* image, int32_t x, int32_t y);

/* ---- Conversion ---- */

/* Converts the pixels of `src` into the format of `dst`. Note the order: the destination comes
 * first.
 *
 *     from \ to   RGB24  RGB32  YV12  YUY2  I420  RGB8  YUV422  AYUV32  NV12
 *     RGB24       0      0      0     0     0     1     2       2       2
 *     RGB32       0      0      0     0     0     1     2       0       0
 *     YV12        0      0      0     0     0     1     2       2       1
 *     YUY2        0      0      0     0     0     1     0       2       2
 *     I420        0      0      0     0     0     1     2       2       2
 *     RGB8        0      1      1     1     1     1     2       2       2
 *     YUV422      0      2      2     0     2     2     2       2       2
 *     AYUV32      2      0      2     2     2     2     2       2       2
 *     NV12        2      0      2     2     2     2     2       2       2
 *
 * 0: converted; 1 and 2: that result, and nothing is written. A destination format outside 1 to 9
 * answers 2.
 *
 * The top left area common to both images is converted; the rest of `dst` keeps its bytes. (RGB8 to
 * RGB24 walks the size of `src`: the images must have equal sizes.) YUV formats hold chroma for
 * pairs of columns, 4:2:0 formats also for pairs of rows: where the common size is odd, the last
 * column or row is not converted. Give such images even sizes: with an odd common width,
 * conversions between RGB and YUV moreover start each further row (4:2:0: pair of rows) one pixel
 * further left, in source and destination.
 *
 * YUV to RGB replicates chroma over the pixels that share it and clamps to 0..255. By processor it
 * is computed in 13-bit fixed point (no SIMD) or in 6-bit fixed point (MMX, SSE2 and wider), which
 * may differ by a level: with Y = 235, U = V = 128 every channel is 254 or 253. YUY2 to RGB24 uses
 * 6 bits for the first 16 * (width / 16) pixels of each row and 13 bits for the rest, on every
 * processor. RGB to YUV truncates Y = ((66 R + 129 G + 25 B) >> 8) + 16, and likewise U and V of
 * the summed pixels that share them; it is the same on all processors. RGB32 gets 0 in its fourth
 * byte, AYUV32 its alpha.
 *
 * In place: `dst` and `src` may lie in the same memory, with the same stride, for conversions
 * between RGB32 and AYUV32, and where both have the same format and size (nothing changes then).
 *
 * Companions: only for an RGB32 source and only `dst->alpha`: if it is not null,
 * PxbChannelGet(dst->alpha, src, 1) runs after the conversion, also after an unsupported one, and
 * its result is the result of the call.
 *
 * PXB_BAD_ARGUMENT  `dst->data` is null; `src->data` is null; `src->format` is not 1 to 9
 * as in the table   otherwise (RGB32 with a companion: as PxbChannelGet says) */
PXB_API int32_t PXB_CALL PxbColorSpaceConv(ImageBuffer* dst, const ImageBuffer* src);

/* Writes one channel of `src` into `dst`, one byte a pixel. The format of `dst` is not looked at;
 * it must be at least as large as `src` (channel 5: as `src` rounded up to even).
 *
 *     channel   RGB32 source   RGB24 source
 *     1         X (alpha)      grey, (151 G + 77 R + 28 B) >> 8
 *     2         R              result 1
 *     3         G              result 1
 *     4         B              result 1
 *     5         luma, as the conversion to YV12 gives it; any source that converts to YV12
 *
 * Channel 5 answers 0 even where the source does not convert or memory is short; `dst` is then
 * untouched. Companions are not looked at.
 *
 * PXB_BAD_ARGUMENT  `dst->data` is null; `src->data` is null; RGB24 and RGB32: `channel` is not 1
 *                   to 5; `src->format` is not 1 to 7 (unless `channel` is 5)
 * PXB_UNSUPPORTED   RGB24: channels 2 to 4; formats 3 to 7: all channels but 5
 * PXB_SUCCESS       otherwise */
PXB_API int32_t PXB_CALL PxbChannelGet(ImageBuffer* dst, const ImageBuffer* src, int32_t channel);

/* ---- Scaling ---- */

/* Scales all of `src` onto all of `dst`, which has the same format. Note the order: the destination
 * comes first.
 *
 * `mode` points to the interpolation mode. It is read for RGB24, RGB32, RGB8, YV12 and I420 only;
 * YUY2 is always bilinear. `mode` may be null for the other formats.
 *
 *     mode   RGB24, RGB32                               RGB8, YV12, I420
 *     0      nearest                                    as RGB24
 *     1, 5   bilinear                                   as RGB24
 *     2      bilinear, borders fade to 0                as RGB24
 *     3      as 1; nothing is written where the source  as 1, but as 6 where the source is at
 *            is at least twice as wide and as high      least twice as wide and as high
 *     4      as 3, but 2 instead of 1                   as 3, but 2 instead of 1
 *     6      spline where the source is wider and       spline where the source is wider and
 *            higher; nothing is written otherwise       higher; as 1 otherwise
 *     other  as 1                                       as 1
 *
 * Where a width or height, of source or destination, is 1, every mode is nearest. For YV12 and I420
 * the sizes of luma decide for all planes; a chroma plane of width or height 1 is nearest.
 *
 * Destination pixel i of n has its centre at (i + 0.5) * N / n source pixels of N, in double
 * precision, step by step. Nearest takes the pixel that holds this point. So enlarging k times
 * repeats each pixel k times, and shrinking k times takes pixel k * i + k / 2 (rounded down).
 * Bilinear blends the two rows around it, then the two columns, each with an 8-bit weight w of the
 * second: a + ((b - a) * w >> 8), rounded down. Beyond the centres of border pixels these are
 * repeated; in mode 2 they fade to 0 over one destination pixel. RGB24 never interpolates between
 * its last two columns: from the last but one on, the last is taken, also at equal sizes. The
 * spline is a cubic B-spline of 4 x 4 pixels, which blurs as it shrinks, with 8-bit weights that
 * sum up to 255. The same bytes come from every processor and in every floating-point environment
 * of the caller, which is given back.
 *
 * `bitsPerPixel` of both records must be set: for RGB24, RGB32 and RGB8 it says how many bytes
 * (bitsPerPixel / 8) a pixel has, not the format. The pairs 3 to 4 and 4 to 3 bytes scale, too:
 * modes 3, 4 and 6 as 1, fourth byte 0. Other mixtures write nothing. YUY2 is scaled by whole pairs
 * of pixels; a last column of odd width stays.
 *
 * Companions: if both images have one, they are scaled too, also after an unsupported or unknown
 * format, and the result of that is the result of the call; not where the formats differ or `data`
 * is null.
 *
 * PXB_BAD_ARGUMENT  the formats differ; `dst->data` is null; `src->data` is null; the format is
 *                   AYUV32, NV12 or unknown
 * PXB_UNSUPPORTED   the format is YUV422
 * PXB_SUCCESS       otherwise, also where memory for the work is short: `dst` is then untouched */
PXB_API int32_t PXB_CALL PxbResize(ImageBuffer* dst, const ImageBuffer* src, const int32_t* mode);

/* Scales the rectangle `srcRect` of `src` onto the rectangle `dstRect` of `dst`, as if they were
 * whole images: nothing outside `srcRect` has an influence. As PxbResize otherwise. Either
 * rectangle may be null. An empty one is no error: nothing is scaled, and companions are still
 * visited, with the same rectangles.
 *
 * YV12 and I420: the chroma of a rectangle is (right - left) / 2 samples wide, (bottom - top) / 2
 * high, and begins at sample left / 2 of chroma row top / 2. YUY2: an odd left edge is allowed and
 * begins with the second half of a pair, whose V is then taken for U; give even ones.
 * Images of pixels: the left edges of both rectangles count `dst->bitsPerPixel` bits a column.
 *
 * PXB_BAD_ARGUMENT  the formats differ; `dst->data` is null; `src->data` is null; `dstRect` does
 *                   not lie in `dst`; `srcRect` does not lie in `src`; the format is AYUV32, NV12
 *                   or unknown
 * PXB_UNSUPPORTED, PXB_SUCCESS  as PxbResize */
PXB_API int32_t PXB_CALL PxbResizeEx(ImageBuffer* dst, const ImageBuffer* src, const int32_t* mode,
                                     const Rect* dstRect, const Rect* srcRect);

/* ---- Turns and mirrors ---- */

/* Rotates `src` by `angle` degrees into `dst`, which has the same format and whatever size the
 * caller gave it (for 90 and 270 usually width and height exchanged). Any `angle` is taken; it is
 * not reduced modulo 360.
 *
 * The two kinds of images turn in opposite directions, as seen on the screen:
 *
 *     angle   RGB24, RGB32            YV12, I420
 *     90      counter-clockwise: the  clockwise: the left column, read upward,
 *             right column becomes    becomes the top row
 *             the top row
 *     180     upside down             upside down
 *     270     clockwise               counter-clockwise
 *     other   counter-clockwise       nothing is written
 *
 * RGB24 and RGB32: the centre of `src` falls on the centre of `dst`, pixels being points with whole
 * coordinates; nothing is scaled. `dst` pixels between four pixels of `src` are interpolated in 16.16
 * fixed point with 8-bit weights. Those at the ends of a row that reach over the edge of `src`, by
 * less than a pixel, fade toward black. Pixels of `dst` that lie outside `src`, and some rows that
 * only touch it, keep their bytes: paint `dst` first. With equal sizes 0 copies; 360 is no special
 * case and may differ from that by a level. Nothing is interpolated where a width or
 * height is 1. Bytes per pixel are `bitsPerPixel` / 8 of each record, whatever the format; where only
 * `dst` has a fourth byte it becomes 0.
 *
 * At exactly 90, 180 and 270 row 0 of `dst`, and at 180 and 270 column 0, are then copied from the
 * opposite edges of `src`, RGB8 included, which gets nothing else: any other angle leaves RGB8 images,
 * and so companions, as they are. The copies go by the size of `dst` alone and are not checked. Let
 * `dst` be Wd x Hd and `src` Ws x Hs; never pass
 *
 *     90, 270   Wd > Hs or Hd > Ws: bytes outside `src` would be read
 *     180       Wd > Ws or Hd > Hs: the same; or strides that differ: column 0 of `dst` is written
 *               with the stride of `src`, which may lie outside `dst`
 *
 * YV12 and I420: exact copies. The stride and height of `dst` tell where its planes lie, and its width
 * is not looked at; rows are taken to be as long as the pictures are wide, without padding. `dst` must
 * hold planes as large as those of `src`. Sizes must be even; an odd last column or row of chroma is
 * left out.
 *
 * No memory is allocated. The caller's floating-point environment does not matter and is given back;
 * all builds give the same bytes.
 *
 * Companions: if both images have one, they are rotated too, whatever the result so far, and the
 * result of that is the result of the call. Bad records (the first line below) end the call before.
 *
 * PXB_BAD_ARGUMENT  the formats differ; `dst->data` is null; `src->data` is null
 * PXB_BAD_ARGUMENT  the format is AYUV32, NV12 or unknown
 * PXB_UNSUPPORTED   the format is YUY2 or YUV422
 * PXB_SUCCESS       otherwise */
PXB_API int32_t PXB_CALL PxbRotate(ImageBuffer* dst, const ImageBuffer* src, int32_t angle);

/* Mirrors the rectangle `rect` of `image` left to right, in place. `rect` may be null. Pixels
 * outside it and padding keep their bytes.
 *
 * RGB24, RGB32   whole pixels move, the fourth byte with them
 * YUY2           the coordinates of `rect` must be even. Each group Y0 U Y1 V moves with its chroma,
 *                and its two samples of luma change places; but where the number of groups is odd,
 *                the middle one stays as it is
 * YV12, I420     luma as it is; in each chroma plane (right - left) / 4 samples from column left / 2
 *                on change places with those before column right / 2, in (bottom - top) / 2 rows
 *                from top / 2 on. So give even coordinates, lest chroma moves against luma. The
 *                second chroma plane is taken to lie (height / 2) * (stride / 2) bytes after the
 *                first, which is elsewhere than usual where stride or height is odd
 * RGB8           nothing moves, and the result is 0: callers depend on it
 *
 * Mirroring twice restores the image.
 *
 * Companions: `image->alpha`, if not null, is mirrored with the same rectangle after any result of
 * the format (unsupported and unknown formats included), and its result is the result of the call;
 * not after an empty or bad rectangle, null `data` or odd YUY2 coordinates. An RGB8 companion so
 * keeps its pixels while those of its owner move.
 *
 * PXB_BAD_ARGUMENT  `rect` does not lie in the image
 * PXB_SUCCESS       `rect` is empty
 * PXB_BAD_ARGUMENT  `data` is null; the format is not 1 to 7; YUY2: a coordinate of `rect` is odd
 * PXB_UNSUPPORTED   the format is YUV422
 * PXB_FAILURE       YUY2 of odd width without `rect`
 * PXB_SUCCESS       otherwise */
PXB_API int32_t PXB_CALL PxbFliphorizontal(ImageBuffer* image, const Rect* rect);

/* Mirrors the rectangle `rect` of `image` top to bottom, in place. `rect` may be null, and may have
 * any coordinates. Rows move as wholes, and what lies outside stays.
 *
 * Interleaved formats and YUV422: pixels of `bitsPerPixel` / 8 bytes, whatever the format; a record
 * that the caller filled must have it right. YUV422 is taken as packed rows: planes of its other
 * reading would be mixed up. YV12 and I420: luma as it is; in each chroma plane (right - left) / 2
 * samples from column left / 2 on, in (bottom - top) / 2 rows from top / 2 on, where the second
 * plane lies stride * height / 4 bytes after the first. Mirroring twice restores the image, unless
 * its rows overlap.
 *
 * Companions: as PxbFliphorizontal; RGB8 companions are mirrored with their owners.
 *
 * PXB_BAD_ARGUMENT  `rect` does not lie in the image
 * PXB_SUCCESS       `rect` is empty
 * PXB_BAD_ARGUMENT  `data` is null; the format is not 1 to 7
 * PXB_SUCCESS       otherwise */
PXB_API int32_t PXB_CALL PxbFlipvertical(ImageBuffer* image, const Rect* rect);

/* ---- Blending ---- */

/* Blends the rectangle `srcRect` of `src` over the equally large rectangle `dstRect` of `dst`,
 * which has the same format. A sample d of `dst`, with s the sample of `src` and a the alpha of the
 * pixel, 0 to 255, becomes
 *
 *     ((256 - a) d + a s) >> 8
 *
 * The weights add up to 256 and the result is truncated, so a = 0 leaves d as it is and a = 255
 * gives nearly s: white over black becomes 254. Callers depend on these bytes.
 *
 * Alpha comes from `alphaImage`, an RGB8 image; where that or its `data` is null, from the
 * companion of `src`, except that RGB32 takes the fourth byte of each source pixel and does not ask
 * the companion. A plane of alpha goes with `src`: the value for a pixel stands at the pixel's
 * coordinates there. It must reach as far as `srcRect`; its format and size are not looked at.
 *
 *     RGB24        all three bytes
 *     RGB32        the first three bytes; the fourth byte of `dst` stays
 *     YUY2         both bytes of each pixel, luma and chroma: rectangles that begin at an even
 *                  column in one image and an odd one in the other mix U with V
 *     YV12, I420   blocks of 2 x 2 pixels, from the corners of the rectangles on. The chroma of
 *                  a block, at half the coordinates of its top left pixel in each image, takes the
 *                  alpha of that pixel. At an odd edge a block has the luma that is there, and its
 *                  chroma where both images have such a sample
 *
 * `alphaImage`, `dstRect` and `srcRect` may be null; a null rectangle is the whole image. `dst`
 * shares no memory with what is read. Neither companion is blended or written.
 *
 * PXB_BAD_ARGUMENT  the formats differ; `dst->data` is null; `src->data` is null; the format is not
 *                   1 to 7
 * PXB_UNSUPPORTED   the format is RGB8 or YUV422
 * PXB_FAILURE       there is no alpha plane; a rectangle does not lie in its image, or its right or
 *                   bottom comes before its left or top; the sizes of the rectangles differ
 * PXB_SUCCESS       otherwise; also for empty rectangles of equal size */
PXB_API int32_t PXB_CALL PxbAlphaBlend(ImageBuffer* dst, const ImageBuffer* src,
                                       const ImageBuffer* alphaImage, const Rect* dstRect,
                                       const Rect* srcRect);

#ifdef __cplusplus
}
#endif

/* The layout of the records is part of the contract: seven words, of which the two pointers widen
 * on 64 bits. */
#if defined(__cplusplus) && (__cplusplus >= 201103L || (defined(_MSC_VER) && _MSC_VER >= 1600))
#define PXB_STATIC_ASSERT(condition, name) static_assert(condition, #name)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define PXB_STATIC_ASSERT(condition, name) _Static_assert(condition, #name)
#else
#define PXB_STATIC_ASSERT(condition, name) typedef char pxb_assert_##name[(condition) ? 1 : -1]
#endif
PXB_STATIC_ASSERT(sizeof(Rect) == 16, rect_is_four_words);
PXB_STATIC_ASSERT(sizeof(PlanePointers) == 3 * sizeof(void*), plane_pointers_are_three_pointers);
PXB_STATIC_ASSERT(offsetof(ImageBuffer, data) == 0, data_comes_first);
PXB_STATIC_ASSERT(offsetof(ImageBuffer, bitsPerPixel) == sizeof(void*), bits_follow_data);
PXB_STATIC_ASSERT(offsetof(ImageBuffer, stride) == sizeof(void*) + 4, stride_follows_bits);
PXB_STATIC_ASSERT(offsetof(ImageBuffer, width) == sizeof(void*) + 8, width_follows_stride);
PXB_STATIC_ASSERT(offsetof(ImageBuffer, height) == sizeof(void*) + 12, height_follows_width);
PXB_STATIC_ASSERT(offsetof(ImageBuffer, format) == sizeof(void*) + 16, format_follows_height);
PXB_STATIC_ASSERT(offsetof(ImageBuffer, alpha) == (sizeof(void*) == 4 ? 24 : 32), alpha_is_last);
PXB_STATIC_ASSERT(sizeof(ImageBuffer) == (sizeof(void*) == 4 ? 28 : 40), seven_words);

#endif /* PXBLIB_H */
