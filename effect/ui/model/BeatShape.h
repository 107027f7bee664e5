#pragma once

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// The ducking that the beats make, by musical time in quarter notes from a bar's start. Without
/// host time it is exact; the recovery takes its tempo from Tempo.
class BeatShape {
  public:
    explicit BeatShape(const ParameterValues& values);

    /// The step of the grid in quarter notes.
    double step() const { return step_; }
    /// A bar of four quarter notes, or two steps if they are longer.
    double span() const;
    /// In dB.
    double duckingAt(double quarters) const;

  private:
    double step_;
    double offset_;
    double length_;
    double depth_;
    // In quarter notes.
    double release_;
};

}  // namespace orvalo::effect::ui
