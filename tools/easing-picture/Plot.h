#pragma once

#include <cstddef>
#include <iosfwd>
#include <vector>

namespace orvalo::picture {

/// A curve's values from 0 to 1, one per frame of a run, including the first and the last.
class Plot {
  public:
    static constexpr std::size_t frames = 160;
    /// Pixels: one per frame, and the height from 0 to 1.
    static constexpr double width = frames;
    static constexpr double way = 72;

    /// number: the curve's number in EnumEasing.
    explicit Plot(std::size_t number);

    double lowest() const;
    double highest() const;

    /// Draws the lines of start and end, the curve and its two ends, with the frame 0 at x and the
    /// value 0 at y.
    void draw(std::ostream& svg, double x, double y) const;

  private:
    std::vector<double> values_;
};

}  // namespace orvalo::picture
