#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace orvalo::testing {

/// A picture of the display.
class Screenshot {
  public:
    Screenshot();
    /// Another display's picture, from a PNG file. Throws std::runtime_error when it is none.
    explicit Screenshot(const std::filesystem::path& file);

    int width() const { return width_; }
    int height() const { return height_; }
    /// The colour of a pixel, as 0xRRGGBB.
    std::uint32_t at(int x, int y) const {
        return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                       static_cast<std::size_t>(x)];
    }
    /// The number of pixels of that colour in a rectangle.
    int count(std::uint32_t color, int x, int y, int width, int height) const;

    bool operator==(const Screenshot&) const = default;

  private:
    int width_;
    int height_;
    std::vector<std::uint32_t> pixels_;
};

}  // namespace orvalo::testing
