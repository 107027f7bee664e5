#include "effect/ui/model/BeatShape.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvalo::effect::ui {

namespace {

/// As stepOf() computes it.
double stepOf(int division) {
    constexpr std::array<double, 3> kinds{1.5, 1.0, 2.0 / 3.0};
    return std::ldexp(4.0, -(division / 3)) * kinds.at(static_cast<std::size_t>(division % 3));
}

}  // namespace

BeatShape::BeatShape(const ParameterValues& values)
    : step_(stepOf(values.whole(Parameter::beatDivision))),
      offset_(0.01 * values[Parameter::beatOffset]),
      length_(0.01 * values[Parameter::beatLength]),
      depth_(values[Parameter::duckDepth]),
      release_(0.001 * values[Parameter::duckRelease] * values[Parameter::beatTempo] / 60.0) {}

double BeatShape::span() const {
    constexpr double bar = 4.0;
    return std::max(bar, 2.0 * step_);
}

double BeatShape::duckingAt(double quarters) const {
    const double steps = quarters / step_ - offset_;
    const double passed = steps - std::floor(steps);
    return passed < length_ ? depth_ : depth_ * std::exp((length_ - passed) * step_ / release_);
}

}  // namespace orvalo::effect::ui
