// The library as a program in C++ uses it, without any other, so that it also builds where there is no
// C++ library at hand. Exits with 0 if a frame was converted to the right bytes.
#include <PxbLib.h>

namespace {

class Image {
  public:
    Image(PixelFormat format, int32_t width, int32_t height) : record() {
        record.format = format;
        record.width = width;
        record.height = height;
        PxbNew(&record, 0);
    }
    ~Image() { PxbDelete(&record); }
    ImageBuffer record;

  private:
    Image(const Image&);
    Image& operator=(const Image&);
};

}  // namespace

int main() {
    Image frame(PXB_I420, 6, 4), screen(PXB_RGB24, 6, 4);
    if (PxbFillColor(&frame.record, 0x0000FF) != PXB_SUCCESS) return 1;
    if (PxbColorSpaceConv(&screen.record, &frame.record) != PXB_SUCCESS) return 2;
    const uint8_t* const last = PxbPixelsRGB24(&screen.record, 5, 3);
    return last[0] == 0 && last[1] == 0 && last[2] == 252 ? 0 : 3;
}
