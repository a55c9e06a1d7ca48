// What went wrong, in the one line that people see: which file, which field, which value, and why.
#pragma once
#include <stdexcept>
#include <string>
#include <string_view>

#include "printable.h"

namespace pxb::tool {

// `file` and `value` may be empty where there is none.
class Error : public std::runtime_error {
  public:
    Error(std::string_view file, std::string_view field, std::string_view value,
          std::string_view reason)
        : std::runtime_error(Line({file, field, value, reason})) {}

  private:
    static std::string Line(std::initializer_list<std::string_view> parts) {
        std::string line;
        for (const std::string_view part : parts) {
            if (part.empty()) continue;
            if (!line.empty()) line += ": ";
            line += part;
        }
        return Printable(line);
    }
};

}  // namespace pxb::tool
