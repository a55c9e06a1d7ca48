// Every variant of the kernels of scaling against the plain ones, where shuffles of every reach are
// needed, just not enough, or of no use.
#include <gtest/gtest.h>

#include "support/image.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

struct Sizes {
    Size from, to;
};

// Ratios up to where no register reaches any more, and rows shorter than a register.
std::vector<Sizes> SizesToTry() {
    std::vector<Sizes> sizes;
    for (int width = 2; width <= 150; width += width < 24 ? 2 : 14)
        for (const int percent :
             {30, 66, 67, 100, 149, 150, 151, 199, 200, 201, 300, 400, 500, 900})
            sizes.push_back(
                {{std::max(2, width * percent / 100), 8}, {width, percent < 100 ? 20 : 5}});
    sizes.push_back({{1366, 9}, {911, 6}});
    sizes.push_back({{911, 6}, {1366, 9}});
    sizes.push_back({{32768, 4}, {4, 2}});
    return sizes;
}

Image Scaled(int format, int mode, const Sizes& sizes) {
    Image src(format, sizes.from, 7), dst(format, sizes.to, 9);
    EXPECT_EQ(PxbResize(&dst.record, &src.record, &mode), PXB_SUCCESS);
    EXPECT_FALSE(src.HasChanged());
    return dst;
}

TEST(ScaleVariants, GiveTheSameBytes) {
    for (const int format : {PXB_RGB24, PXB_RGB32, PXB_RGB8, PXB_I420, PXB_YUY2})
        for (const int mode : {0, 1, 2, 6}) {
            if (format == PXB_YUY2 && mode != 1) continue;
            for (const Sizes& sizes : SizesToTry()) {
                const auto scaled = [&](const Variant& variant) {
                    const ForcedProcessor forced(variant.words);
                    return Scaled(format, mode, sizes);
                };
                const Image wanted = scaled(kAllVariants[0]);
                for (const Variant& variant : RunnableVariants())
                    ASSERT_TRUE(scaled(variant) == wanted)
                        << variant.name << ": " << kFormatNames[format] << ", mode " << mode << ", "
                        << sizes.from.width << " to " << sizes.to.width;
            }
        }
}

}  // namespace
}  // namespace pxb::test
