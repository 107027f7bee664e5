#include "programs/easing/ImpulseGraph.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "programs/easing/Accessible.h"
#include "programs/easing/Colors.h"

namespace orvalo {

namespace {

constexpr double kBall = 9;  // Radii, in pixels.
constexpr double kMark = 3;
constexpr double kMargin = 18;
constexpr std::size_t kFewestTicks = 150;  // Fewest ticks that the width stands for.

void drawLevel(const Cairo::RefPtr<Cairo::Context>& pen, double width, double y, bool isBound) {
    const std::vector<double> dashes = isBound ? std::vector<double>{6, 4} : std::vector<double>{};
    pen->set_dash(dashes, 0);
    pen->set_line_width(isBound ? 1.5 : 1);
    pen->move_to(0, std::round(y) + 0.5);
    pen->line_to(width, std::round(y) + 0.5);
    pen->stroke();
    pen->unset_dash();
}

void fillCircle(const Cairo::RefPtr<Cairo::Context>& pen, double x, double y, double radius) {
    pen->begin_new_sub_path();
    pen->arc(x, y, radius, 0, 2 * std::numbers::pi);
    pen->fill();
}

}  // namespace

ImpulseGraph::ImpulseGraph() {
    set_expand();
    set_content_height(200);
    showAsPicture(*this, "The value over time");
    set_draw_func(sigc::mem_fun(*this, &ImpulseGraph::draw));
}

void ImpulseGraph::begin(std::optional<std::pair<double, double>> bounds, double reach) {
    values_ = {0.0};
    collisions_.clear();
    bounds_ = bounds;
    least_ = std::min(0.0, bounds ? std::min(bounds->first, bounds->second) : -reach);
    greatest_ = std::max(0.0, bounds ? std::max(bounds->first, bounds->second) : reach);
    queue_draw();
}

void ImpulseGraph::append(double value) {
    values_.push_back(value);
    // The value can leave the bounds when they are swapped or the push is large.
    least_ = std::min(least_, value);
    greatest_ = std::max(greatest_, value);
}

void ImpulseGraph::draw(const Cairo::RefPtr<Cairo::Context>& pen, int width, int height) {
    const Colors colors(*this);
    const double range = std::max(greatest_ - least_, 1e-9);
    const auto ticks = static_cast<double>(std::max(values_.size(), kFewestTicks));
    const auto xOf = [&](std::size_t tick) {
        return kMargin + static_cast<double>(tick) * (width - 2 * kMargin) / ticks;
    };
    const auto yOf = [&](double value) {
        return height - kMargin - (value - least_) / range * (height - 2 * kMargin);
    };
    setColor(pen, faded(colors.text, 0.18F));
    drawLevel(pen, width, yOf(0), false);
    if (bounds_) {
        setColor(pen, faded(colors.text, 0.5F));
        drawLevel(pen, width, yOf(bounds_->first), true);
        drawLevel(pen, width, yOf(bounds_->second), true);
    }
    if (values_.empty()) {
        return;
    }
    setColor(pen, faded(colors.accent, 0.8F));
    pen->set_line_width(2);
    pen->set_line_join(Cairo::Context::LineJoin::ROUND);
    for (std::size_t tick = 0; tick < values_.size(); ++tick) {
        pen->line_to(xOf(tick), yOf(values_[tick]));
    }
    pen->stroke();
    setColor(pen, colors.text);
    for (const auto tick : collisions_) {
        if (tick < values_.size()) {
            fillCircle(pen, xOf(tick), yOf(values_[tick]), kMark);
        }
    }
    setColor(pen, colors.accent);
    fillCircle(pen, xOf(values_.size() - 1), yOf(values_.back()), kBall);
}

}  // namespace orvalo
