#pragma once

#include <cstddef>
#include <iosfwd>
#include <vector>

namespace orvalo::picture {

/// A curve's values from 0 to 1, one for each frame of a run, from frame 0 to the last one.
class Plot {
  public:
    static constexpr std::size_t frames = 160;
    /// In pixels: a frame is 1 wide, and the distance from value 0 to 1 is `way`.
    static constexpr double width = frames;
    static constexpr double way = 72;

    /// number: the curve's raw value in EnumEasing.
    explicit Plot(std::size_t number);

    double lowest() const;
    double highest() const;

    /// Draws the lines of start and end value, the curve and its two ends, with frame 0 at x and
    /// value 0 at y.
    void draw(std::ostream& svg, double x, double y) const;

  private:
    std::vector<double> values_;
};

}  // namespace orvalo::picture
