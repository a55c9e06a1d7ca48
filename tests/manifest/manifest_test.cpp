// usage: manifest_test FILE              compares what every variant computes with the file
//        manifest_test --write           prints the file
//        manifest_test --explain GROUP   prints the calls of a group, with what each one leaves
//
// One file holds for all platforms, variants and processors. A line that has to change is a change
// of what callers get; a new group changes no other line.
#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <map>

#include "manifest/groups.h"
#include "support/variants.h"

namespace {

using namespace pxb::test;

// Lines of the file: the name of a group, which of its results it is, and the hash.
using Manifest = std::map<std::string, std::uint64_t>;

std::string LineOf(const Group& group, const Variant& variant) {
    if (group.arithmetic == Arithmetic::kOne) return group.name + " all";
    const bool from_mmx = group.arithmetic == Arithmetic::kSixBitsFromMmx;
    const std::uint32_t least = from_mmx ? pxb::kMmx : pxb::kSse2;
    return group.name + (variant.words.features & least ? " 6-bit" : " 13-bit");
}

std::uint64_t HashOfCall(Scene& scene, const Group& group, int number) {
    scene.Begin(HashOf(group.name) + number);
    group.call(scene);
    return scene.Hash();
}

std::uint64_t HashOfGroup(Scene& scene, const Group& group) {
    std::uint64_t hash = 0;
    for (int i = 0; i < kCallsOfGroup; ++i)
        hash = hash * 0x9E3779B97F4A7C15 + HashOfCall(scene, group, i);
    return hash;
}

// Adds the results of this variant; prints the lines where others had given other ones.
int AddResults(Manifest& manifest, const Variant& variant, bool grows) {
    const ForcedProcessor forced(variant.words);
    Scene scene(false);
    int failures = 0;
    for (const Group& group : AllGroups()) {
        const std::string line = LineOf(group, variant);
        const std::uint64_t hash = HashOfGroup(scene, group);
        const auto known = manifest.find(line);
        if (known == manifest.end() && grows) {
            manifest[line] = hash;
        } else if (known == manifest.end() || known->second != hash) {
            std::printf("%s: %s is %016" PRIx64 ", expected %016" PRIx64 "\n", variant.name,
                        line.c_str(), hash, known == manifest.end() ? 0 : known->second);
            ++failures;
        }
    }
    return failures;
}

int Write() {
    Manifest manifest;
    int failures = 0;
    for (const Variant& variant : RunnableVariants())
        failures += AddResults(manifest, variant, true);
    for (const auto& [line, hash] : manifest)
        std::printf("%s %016" PRIx64 "\n", line.c_str(), hash);
    return failures != 0;
}

int Compare(const char* path) {
    Manifest manifest;
    std::ifstream file(path);
    std::string name, result;
    std::uint64_t hash;
    while (file >> name >> result >> std::hex >> hash)
        manifest[name.append(" ").append(result)] = hash;
    int failures = 0;
    std::string variants;
    for (const Variant& variant : RunnableVariants()) {
        failures += AddResults(manifest, variant, false);
        variants.append(" ").append(variant.name);
    }
    const std::size_t groups = AllGroups().size();
    std::printf("%zu calls in %zu groups in each of%s: %d groups differ\n", groups * kCallsOfGroup,
                groups, variants.c_str(), failures);
    if (failures)
        std::puts("--explain GROUP lists the calls of a group; compare with a good build");
    return failures != 0;
}

// Each call with one hash, or several where the variants differ.
int Explain(const std::string& name) {
    Scene scene(true);
    for (const Group& group : AllGroups()) {
        if (group.name != name) continue;
        for (int i = 0; i < kCallsOfGroup; ++i) {
            std::map<std::uint64_t, std::string> hashes;
            for (const Variant& variant : RunnableVariants()) {
                const ForcedProcessor forced(variant.words);
                hashes[HashOfCall(scene, group, i)].append(" ").append(variant.name);
            }
            std::printf("%d:%s\n", i, scene.Words().c_str());
            for (const auto& [hash, variants] : hashes)
                std::printf("    %016" PRIx64 "%s\n", hash, variants.c_str());
        }
        return 0;
    }
    std::fprintf(stderr, "no group %s\n", name.c_str());
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string first = argc > 1 ? argv[1] : "";
    if (argc == 2 && first == "--write") return Write();
    if (argc == 3 && first == "--explain") return Explain(argv[2]);
    if (argc == 2) return Compare(argv[1]);
    std::fputs("usage: manifest_test FILE | --write | --explain GROUP\n", stderr);
    return 2;
}
