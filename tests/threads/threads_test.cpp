// Four threads call every export at once, on images of their own and on shared sources, in every
// variant: all see the same bytes, and the thread sanitizer sees no race.
#include <array>
#include <cstdio>
#include <deque>
#include <thread>

#include "convert/format_pairs.h"
#include "support/image.h"
#include "support/variants.h"

namespace {

using namespace pxb::test;

constexpr Size kSize = {70, 10}, kSmall = {34, 6};

// Of all that one thread gets.
class Hash {
  public:
    void Add(std::uint64_t value) { hash_ = (hash_ ^ value) * 1099511628211u; }
    void Add(const Image& image) {
        for (const Byte byte : image.First(image.bytes)) Add(byte);
    }
    std::uint64_t Value() const { return hash_; }

  private:
    std::uint64_t hash_ = 1469598103934665603u;
};

void Convert(const std::deque<Image>& sources, Hash& hash) {
    for (const FormatPair pair : PairsThatConvert()) {
        Image dst(pair.to, kSize, 2), alpha(PXB_RGB8, kSize, 3);
        dst.record.alpha = &alpha.record;
        hash.Add(PxbColorSpaceConv(&dst.record, &sources[pair.from].record));
        hash.Add(dst), hash.Add(alpha);
    }
}

void CallOthers(const ImageBuffer* src, Hash& hash) {
    constexpr Rect kRect = {0, 0, 30, 4};
    Image dst(src->format, kSize, 2), small(src->format, kSmall, 3), grey(PXB_RGB8, kSize, 4);
    for (int i = 0; i <= 6; ++i) {
        hash.Add(PxbChannelGet(&grey.record, src, i));
        hash.Add(PxbResize(&small.record, src, &i));
        hash.Add(small);
        hash.Add(PxbResizeEx(&small.record, src, &i, &kRect, nullptr));
        hash.Add(small), hash.Add(grey);
    }
    hash.Add(PxbAlphaBlend(&dst.record, src, src, nullptr, nullptr));
    hash.Add(PxbFliphorizontal(&dst.record, nullptr));
    hash.Add(PxbFlipvertical(&dst.record, nullptr));
    hash.Add(dst);
    Image turned(src->format, {kSize.height, kSize.width}, 2);
    hash.Add(PxbRotate(&dst.record, src, 30));
    hash.Add(PxbRotate(&turned.record, src, 90));
    hash.Add(dst), hash.Add(turned);

    ImageBuffer image = {nullptr, 0, 0, 33, 5, src->format, nullptr};
    hash.Add(PxbNew(&image, 1));
    hash.Add(PxbFillColor(&image, 0x123456));
    for (int i = 0; i < image.stride * image.height; ++i) hash.Add(image.data[i]);
    PxbDelete(&image);
    for (const Byte* const at :
         {PxbPixelsRGB24(src, 3, 2), PxbPixelsRGB32(src, 3, 2), PxbPixelsRGB8(src, 3, 2),
          PxbPixelsYV12(src, 3, 2).u, PxbPixelsI420(src, 3, 2).u, PxbPixelsYUY2(src, 3, 2).u})
        hash.Add(static_cast<std::uint64_t>(at - src->data));
    hash.Add(PxbPixelsYUV422(src, 3, 2).y == nullptr);
}

std::uint64_t HashOfAllCalls(const std::deque<Image>& sources) {
    Hash hash;
    Convert(sources, hash);
    for (int format = PXB_RGB24; format <= PXB_YUV422; ++format)
        CallOthers(&sources[format].record, hash);
    return hash.Value();
}

}  // namespace

int main() {
    int failures = 0;
    std::deque<Image> sources;
    for (int format = 0; format <= kFormats; ++format) sources.emplace_back(format, kSize, 1);
    for (const Variant& variant : RunnableVariants()) {
        const ForcedProcessor forced(variant.words);
        const std::uint64_t wanted = HashOfAllCalls(sources);
        std::array<std::uint64_t, 4> hashes = {};
        std::array<std::thread, 4> threads;
        for (int i = 0; i < 4; ++i)
            threads[i] = std::thread([&, i] { hashes[i] = HashOfAllCalls(sources); });
        for (std::thread& thread : threads) thread.join();
        for (const std::uint64_t hash : hashes) failures += hash != wanted;
        if (failures) std::printf("%s: threads see other bytes than one alone\n", variant.name);
    }
    return failures != 0;
}
