#pragma once

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// The ducking that the beats make, by musical time in quarter notes from a bar's start. Takes the
/// tempo from Beat Tempo: at the host's own tempo the recovery is shorter or longer than shown.
class BeatShape {
  public:
    explicit BeatShape(const ParameterValues& values);

    /// A bar of four quarter notes, or two steps if they are longer.
    double span() const;
    /// In dB.
    double duckingAt(double quarters) const;

  private:
    // In quarter notes.
    double step_;
    // Shares of the step.
    double offset_;
    double length_;
    // In dB.
    double depth_;
    // In quarter notes.
    double release_;
};

}  // namespace orvalo::effect::ui
