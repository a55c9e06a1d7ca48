// The word that somebody may have meant.
#pragma once
#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace pxb::tool {

// Letters to insert, to drop and to change until `a` is `b`.
inline std::size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);  // from the letters of `a` so far to those of `b`
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

// Of `known`, which is not empty.
inline std::string Nearest(std::string_view word, const std::vector<std::string>& known) {
    return *std::ranges::min_element(
        known, {}, [&](const std::string& other) { return EditDistance(word, other); });
}

}  // namespace pxb::tool
