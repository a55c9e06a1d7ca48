// The calls of the manifest, in groups.
#pragma once
#include <functional>

#include "manifest/scene.h"

namespace pxb::test {

// YUV to RGB has two results, of 13 and of 6 bits; processors differ in which they have.
enum class Arithmetic {
    kOne,
    kSixBitsFromMmx,
    kSixBitsFromSse2
};

struct Group {
    std::string name;
    std::function<void(Scene&)> call;
    Arithmetic arithmetic = Arithmetic::kOne;
};

constexpr int kCallsOfGroup = 25;

std::vector<Group> AllGroups();

}  // namespace pxb::test
