#include "series.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "error.h"
#include "numbers.h"
#include "paths.h"

namespace pxb::tool {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDigits = "0123456789";

// A % with digits and a d behind it; elsewhere % is a character as any other.
struct Placeholder {
    std::size_t begin, end;
};

std::optional<Placeholder> FindPlaceholder(const std::string& path, std::size_t from) {
    for (std::size_t at = path.find('%', from); at != std::string::npos;
         at = path.find('%', at + 1)) {
        const std::size_t end = path.find_first_not_of(kDigits, at + 1);
        if (end != std::string::npos && path[end] == 'd') return Placeholder{at, end + 1};
    }
    return std::nullopt;
}

}  // namespace

std::optional<Series> Series::Find(const std::string& path) {
    const std::optional<Placeholder> found = FindPlaceholder(path, 0);
    if (!found) return std::nullopt;
    const std::string text = path.substr(found->begin, found->end - found->begin);
    const auto refuse = [&](std::string_view reason) { throw Error(path, "series", text, reason); };
    if (FindPlaceholder(path, found->end))
        refuse("stands twice; files of a series have one number");
    if (path.find_first_of("/\\", found->end) != std::string::npos)
        refuse("should be in the name of the file, not of its folder");
    const bool plain = text == "%d";
    if (!plain && (text.size() != 4 || text[1] != '0' || text[2] == '0'))
        refuse("should be %d or, with leading zeros, %01d to %09d");
    return Series(path.substr(0, found->begin), path.substr(found->end), plain ? 1 : text[2] - '0');
}

Series::Series(std::string before, std::string after, std::size_t digits)
    : before_(std::move(before)), after_(std::move(after)), digits_(digits) {}

std::string Series::Name(std::int64_t number) const {
    const std::string digits = std::to_string(number);
    return before_ + std::string(digits_ - std::min(digits_, digits.size()), '0') + digits + after_;
}

std::vector<std::int64_t> Series::Existing() const {
    const fs::path folder = PathOf(before_ + "0").parent_path();
    const std::size_t name_at = before_.find_last_of("/\\") + 1;  // 0 where there is no folder
    const std::string before = before_.substr(name_at);
    std::error_code error;
    std::vector<std::int64_t> numbers;
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = NameOf(entry->path().filename());
        if (name.size() <= before.size() + after_.size() || !name.starts_with(before)) continue;
        const auto number = ParseNumber(
            name.substr(before.size(), name.size() - before.size() - after_.size()), 0, INT32_MAX);
        if (number && Name(*number).substr(name_at) == name) numbers.push_back(*number);
    }
    if (error) throw Error(Name(0), "open", "", error.message());
    std::ranges::sort(numbers);
    return numbers;
}

}  // namespace pxb::tool
