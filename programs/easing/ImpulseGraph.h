#pragma once

#include <gtkmm/drawingarea.h>

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace orvalo {

/// The way of a value, tick by tick from left to right, with a ball at its end, between bounds
/// where there are any.
class ImpulseGraph : public Gtk::DrawingArea {
  public:
    ImpulseGraph();

    /// Begins anew. bounds: least and greatest; reach: how far from 0 the value may come without.
    void begin(std::optional<std::pair<double, double>> bounds, double reach);
    void append(double value);
    /// Marks the last value as a collision.
    void markCollision() { collisions_.push_back(values_.size()); }

  private:
    void draw(const Cairo::RefPtr<Cairo::Context>& pen, int width, int height);

    std::vector<double> values_;
    std::vector<std::size_t> collisions_;  ///< Which of the values follow one.
    std::optional<std::pair<double, double>> bounds_;
    double least_ = -1;
    double greatest_ = 1;
};

}  // namespace orvalo
