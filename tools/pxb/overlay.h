// A picture that is laid over others, with the alpha that says how much of it is seen.
#pragma once
#include <optional>
#include <string>

#include "commands.h"
#include "picture.h"

namespace pxb::tool {

class Overlay {
  public:
    // Reads the overlay and its alpha: the first frame of each file.
    explicit Overlay(const OverlayOptions& options);

    // `picture` with the overlay over it, which is brought into the format of `picture` first.
    Picture Over(const std::string& file, const Picture& picture);

  private:
    void CheckPlace(const std::string& file, const Picture& picture) const;

    OverlayOptions options_;
    Picture original_;
    Picture mask_;
    Rect part_;
    std::optional<Picture> converted_;
};

}  // namespace pxb::tool
