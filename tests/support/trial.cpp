#include "support/trial.h"

#include <algorithm>
#include <cstring>

#include "support/noise.h"

namespace pxb::test {

Trial::Trial() : background_(Noise(GuardedMemory::kSize, 1)), expected_(GuardedMemory::kSize) {
    const std::vector<std::uint8_t> pixels = Noise(2 * GuardedMemory::kArea, 2);
    std::memcpy(src_memory.First(), pixels.data(), GuardedMemory::kArea);
    std::memcpy(src_memory.Second(), pixels.data() + GuardedMemory::kArea, GuardedMemory::kArea);
    src_memory.ForbidWriting();
}

void Trial::Place(ImageBuffer& image, const GuardedMemory& memory, const Visited& visited,
                  Placement placement) {
    const Span all = visited.All();
    if (all.IsEmpty())
        image.data = memory.FirstEnd();
    else if (placement == Placement::kFront)
        image.data = memory.First() - all.first;
    else
        image.data =
            memory.FirstEnd() - (placement == Placement::kSplit ? visited.luma.end : all.end);
}

testing::AssertionResult Trial::Compare(ImageBuffer dst, ImageBuffer src,
                                        const Reference& reference, const Converter& convert) {
    return CompareEach(dst, src, reference, {convert});
}

testing::AssertionResult Trial::CompareEach(ImageBuffer dst, ImageBuffer src,
                                            const Reference& reference,
                                            const std::vector<Converter>& converters) {
    std::memcpy(expected_.data(), background_.data(), background_.size());
    ImageBuffer expected = dst;
    expected.data = expected_.data() + (dst.data - dst_memory.Base());
    reference(expected, src);
    for (std::size_t i = 0; i < converters.size(); ++i)
        if (const auto result = CompareOne(dst, src, converters[i]); !result)
            return testing::AssertionFailure() << "converter " << i << ": " << result.message();
    return testing::AssertionSuccess();
}

testing::AssertionResult Trial::CompareOne(ImageBuffer dst, ImageBuffer src,
                                           const Converter& convert) {
    std::uint8_t* const areas[] = {dst_memory.First(), dst_memory.Second()};
    const auto offset = [&](const std::uint8_t* p) { return p - dst_memory.Base(); };
    for (std::uint8_t* area : areas)
        std::memcpy(area, background_.data() + offset(area), GuardedMemory::kArea);
    const std::int32_t result = convert(&dst, &src);
    if (result != PXB_SUCCESS) return testing::AssertionFailure() << "result " << result;

    for (const std::uint8_t* area : areas) {
        const std::uint8_t* const wanted = expected_.data() + offset(area);
        if (std::memcmp(area, wanted, GuardedMemory::kArea) == 0) continue;
        const auto [got, want] = std::mismatch(area, area + GuardedMemory::kArea, wanted);
        return testing::AssertionFailure() << "byte " << got - dst.data << " after the data is "
                                           << int{*got} << ", expected " << int{*want};
    }
    return testing::AssertionSuccess();
}

}  // namespace pxb::test
