// A picture that is laid over others, with the alpha that says how much of it is seen.
#pragma once
#include <mutex>
#include <optional>
#include <string>

#include "commands.h"
#include "picture.h"

namespace pxb::tool {

class Overlay {
  public:
    // Reads the overlay and its alpha: the first frame of each file.
    explicit Overlay(const OverlayOptions& options);

    // Over a picture of `file`, in whose format it is brought first. Pictures have the same format,
    // and may come from several threads.
    void LayOver(const std::string& file, Picture& picture);

  private:
    const Picture& ConvertedTo(PixelFormat format);
    void CheckPlace(const std::string& file, const Picture& picture) const;

    OverlayOptions options_;
    Picture original_;
    Picture mask_;
    Rect part_;
    std::mutex converting_;
    std::optional<Picture> converted_;
};

}  // namespace pxb::tool
