/* The library as a C program uses it: through its header and an import library, with nothing else,
 * so that it also builds for compilers without a C library at hand. The exit status of main is the
 * number of the first check that failed, or 0. */
#include <PxbLib.h>

#define CHECK(number, condition) \
    if (!(condition)) return number

/* A call that left the stack elsewhere than the caller expects would move it further each time. */
#if defined(__i386__)
#define READ_STACK_POINTER(variable) __asm__ volatile("movl %%esp, %0" : "=r"(variable))
#else
#define READ_STACK_POINTER(variable) __asm__ volatile("movq %%rsp, %0" : "=r"(variable))
#endif

static int CheckAccessors(void) {
    uint8_t pixels[64];
    ImageBuffer image = {0, 0, 0, 0, 0, 0, 0};
    PlanePointers p;
    uintptr_t first = 0, now = 0;
    int i;

    image.data = pixels;
    image.stride = 4;
    image.height = 4;
    for (i = 0; i < 1000; ++i) {
        READ_STACK_POINTER(now);
        if (i == 0) first = now;
        CHECK(1, now == first);
        p = PxbPixelsI420(&image, 2, 2);
        CHECK(2, p.y == pixels + 9 && p.u == pixels + 19 && p.v == pixels + 23);
        p = PxbPixelsYV12(&image, 3, 1);
        CHECK(3, p.y == pixels + 5 && p.u == pixels + 22 && p.v == pixels + 18);
        p = PxbPixelsYUV422(0, i, i);
        CHECK(4, !p.y && !p.u && !p.v);
    }
    image.stride = 16;
    p = PxbPixelsYUY2(&image, 3, 1);
    CHECK(5, p.y == pixels + 22 && p.u == pixels + 21 && p.v == pixels + 23);
    CHECK(6, PxbPixelsRGB24(&image, 2, 1) == pixels + 22);
    CHECK(7, PxbPixelsRGB32(&image, 2, 1) == pixels + 24);
    CHECK(8, PxbPixelsRGB8(&image, 2, 1) == pixels + 18);
    return 0;
}

static int CheckFrame(void) {
    ImageBuffer frame = {0, 0, 0, 0, 0, 0, 0}, screen = {0, 0, 0, 0, 0, 0, 0};
    const uint8_t* pixel;

    frame.format = PXB_I420;
    frame.width = frame.height = 3;
    CHECK(10, PxbNew(&frame, 1) == PXB_SUCCESS);
    CHECK(11, frame.width == 4 && frame.height == 4 && frame.stride == 4);
    CHECK(12, frame.bitsPerPixel == 12 && frame.alpha && frame.alpha->format == PXB_RGB8);
    CHECK(13, PxbFillColor(&frame, 0x0000FF) == PXB_SUCCESS);
    CHECK(14, frame.data[0] == 81 && frame.data[16] == 90 && frame.data[20] == 239);

    screen.format = PXB_RGB32;
    screen.width = screen.height = 4;
    CHECK(15, PxbNew(&screen, 0) == PXB_SUCCESS);
    CHECK(16, PxbColorSpaceConv(&screen, &frame) == PXB_SUCCESS);
    pixel = PxbPixelsRGB32(&screen, 3, 3);
    CHECK(17, pixel[2] > 250 && pixel[1] < 4 && pixel[0] < 4 && pixel[3] == 0);
    CHECK(18, PxbChannelGet(frame.alpha, &screen, 2) == PXB_SUCCESS);
    CHECK(19, frame.alpha->data[0] == pixel[2]);

    CHECK(20, PxbDelete(&screen) == PXB_SUCCESS && !screen.data);
    CHECK(21, PxbDelete(&frame) == PXB_SUCCESS && !frame.data && !frame.alpha);
    screen.format = 10;
    CHECK(22, PxbNew(&screen, 0) == PXB_FAILURE);
    return 0;
}

int main(void) {
    const int failed = CheckAccessors();
    return failed ? failed : CheckFrame();
}
