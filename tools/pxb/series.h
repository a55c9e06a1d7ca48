// A series of pictures that a pattern names: out-%04d.png is out-0000.png, out-0001.png and so on.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pxb::tool {

class Series {
  public:
    // Nothing for a path without %d, or %0Nd for N digits; refuses one that has it twice, in the name
    // of a folder or with other flags.
    static std::optional<Series> Find(const std::string& path);

    std::string Name(std::int64_t number) const;

    // The numbers of the files that exist, in order.
    std::vector<std::int64_t> Existing() const;

  private:
    Series(std::string before, std::string after, std::size_t digits);

    std::string before_, after_;  // the folder belongs to `before_`
    std::size_t digits_;          // at least; leading zeros fill up
};

}  // namespace pxb::tool
