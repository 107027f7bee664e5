#include "effect/ui/model/BeatShape.h"

#include <algorithm>
#include <cmath>

#include "effect/dsp/BeatGenerator.h"

namespace orvalo::effect::ui {

BeatShape::BeatShape(const ParameterValues& values)
    : step_(BeatGenerator::stepOf(values.whole(Parameter::beatDivision))),
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
