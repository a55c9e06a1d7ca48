#include "manifest/scene.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "support/noise.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace pxb::test {
namespace {

constexpr int kBits[] = {0, 24, 32, 12, 16, 12, 8, 16, 32, 12};

int RowBytes(int bits, int width) {
    return bits == 12 ? width : bits / 8 * width;
}

}  // namespace

std::uint64_t HashOf(std::string_view bytes) {
    return XXH3_64bits(bytes.data(), bytes.size());
}

Scene::Scene(bool tells) : tells_(tells), noise_(Noise(1 << 17, 1)), memory_(kArena + kAlignment) {}

void Scene::Begin(std::uint64_t seed) {
    state_ = seed;
    count_ = 0, used_ = 0;
    left_.clear();
    words_.clear();
}

int Scene::Draw(int first, int last, const char* what) {
    state_ += 0x9E3779B97F4A7C15;
    std::uint64_t z = state_;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
    z = (z ^ z >> 27) * 0x94D049BB133111EB;
    z ^= z >> 31;
    const std::int64_t count = std::int64_t{last} - first + 1;
    const int drawn = static_cast<int>(first + static_cast<std::int64_t>(z >> 1) % count);
    if (what) Tell(what, drawn);
    return drawn;
}

Size Scene::DrawSize(int least_width, int most_width, int rows) {
    Size size = {Draw(least_width, most_width), Draw(1, rows)};
    if (OneIn(2)) size = {(size.width + 1) / 2 * 2, (size.height + 1) / 2 * 2};
    return size;
}

std::optional<Rect> Scene::DrawRect(Size size) {
    if (OneIn(5)) return {};
    Rect rect = {Draw(0, size.width / 3), Draw(0, size.height / 3),
                 size.width - Draw(0, size.width / 2), size.height - Draw(0, size.height / 2)};
    if (OneIn(2)) rect = {rect.left / 2 * 2, rect.top / 2 * 2, rect.right / 2 * 2, rect.bottom};
    if (OneIn(16)) rect.bottom = size.height + 1;
    for (const int edge : {rect.left, rect.top, rect.right, rect.bottom}) Tell("edge", edge);
    return rect;
}

ImageBuffer* Scene::Add(const Wanted& wanted) {
    const auto [format, size, given_bits, given_stride, may_turn, room] = wanted;
    const int bits = given_bits ? given_bits : kBits[format];
    const int padding = OneIn(2) ? 0 : Draw(1, 17);
    const bool packed = !Is420(format) && format != PXB_YUV422;
    const bool turned = given_stride ? given_stride < 0 : packed && may_turn && OneIn(4);
    const int stride = given_stride ? std::abs(given_stride) : RowBytes(bits, size.width) + padding;
    const int rows = std::max({size.height, room.height, 0});
    const std::size_t bytes =
        std::max({stride, RowBytes(bits, room.width), 0}) * std::size_t(rows) * 3 / 2;

    // Rows that lean start up to 12 bytes further left each.
    const std::size_t margin = kAlignment + 16 * std::size_t(rows) + 2 * std::abs(size.width);
    const std::size_t first = used_ + margin + (OneIn(2) ? 0 : Draw(1, 63));
    const std::size_t end = (first + bytes + margin + kAlignment - 1) / kAlignment * kAlignment;
    if (end > kArena || count_ == static_cast<int>(records_.size())) std::abort();
    for (std::size_t skip = Draw(0, 4095); used_ < end; skip = 0) {
        const std::size_t piece = std::min(end - used_, noise_.size() - skip);
        std::memcpy(Arena() + used_, noise_.data() + skip, piece);
        used_ += piece;
    }
    Byte* const data = Arena() + first + (turned ? std::max(size.height - 1, 0) * stride : 0);
    ImageBuffer& record = records_[count_];
    record = {data, bits, turned ? -stride : stride, size.width, size.height, format, nullptr};
    if (OneIn(60)) record.data = nullptr;
    if (OneIn(60)) record.format = 10 * Draw(-1, 1);
    data_[count_++] = record.data;
    Tell("image of format", record.format);
    Tell("bits", bits), Tell("stride", record.stride), Tell("data", record.data != nullptr);
    Tell("width", size.width), Tell("height", size.height);
    return &record;
}

void Scene::Leave(const ImageBuffer& record) {
    for (const int field :
         {record.bitsPerPixel, record.stride, record.width, record.height, record.format})
        Leave(field);
}

void Scene::Tell(const char* what, int value) {
    if (tells_) words_.append(" ").append(what).append(" ").append(std::to_string(value));
}

std::uint64_t Scene::Hash() {
    for (int i = 0; i < count_; ++i) {
        Leave(records_[i]);
        Leave(records_[i].data == data_[i]);
        Leave(records_[i].alpha ? records_[i].alpha - records_.data() : -1);
    }
    const std::uint64_t images = XXH3_64bits(Arena(), used_);
    return XXH3_64bits_withSeed(left_.data(), left_.size() * sizeof left_[0], images);
}

Byte* Scene::Arena() {
    const auto address = reinterpret_cast<std::uintptr_t>(memory_.data());
    return memory_.data() + (-address & (kAlignment - 1));
}

}  // namespace pxb::test
