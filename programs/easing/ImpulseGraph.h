#pragma once

#include <gtkmm/drawingarea.h>

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace orvalo {

/// A value over time, tick by tick from left to right, with a ball at its end and lines at the
/// bounds, if any.
class ImpulseGraph : public Gtk::DrawingArea {
  public:
    ImpulseGraph();

    /// Clears the graph. bounds: least and greatest; reach: the largest distance from 0 without
    /// bounds.
    void begin(std::optional<std::pair<double, double>> bounds, double reach);
    void append(double value);
    /// Marks the last value as a collision.
    void markCollision() { collisions_.push_back(values_.size()); }

  private:
    void draw(const Cairo::RefPtr<Cairo::Context>& pen, int width, int height);

    std::vector<double> values_;
    std::vector<std::size_t> collisions_;  ///< Indices of the values that follow a collision.
    std::optional<std::pair<double, double>> bounds_;
    double least_ = -1;
    double greatest_ = 1;
};

}  // namespace orvalo
