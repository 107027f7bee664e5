#pragma once

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// The position of a value on its knob, 0 to 1.
double positionOf(Parameter parameter, float value);

/// The value at a position, which is clamped to 0 to 1. Not rounded.
float valueAt(Parameter parameter, double position);

/// The nearest value that a knob can be turned to: 0.1 dB and 1 % steps, times and ratios with
/// three digits, whole notes and channels. Always within the range.
float rounded(Parameter parameter, float value);

/// The value `steps` steps above, or below when negative. Lands on round values: multiples of the
/// step, and for a logarithmic taper values such as 10, 12, 14, 16, 18, 20 and 25.
float stepped(Parameter parameter, float value, int steps, bool fine);

/// A knob that is being dragged. Keeps the unrounded position, so that slow and fine moves add up.
class KnobDrag {
  public:
    /// The factor of fine control.
    static constexpr double fineShare = 0.1;

    KnobDrag(Parameter parameter, float value)
        : parameter_(parameter), position_(positionOf(parameter, value)) {}

    Parameter parameter() const { return parameter_; }

    /// Moves by a share of the range, up when positive, and returns the new value.
    float move(double share, bool fine);

  private:
    Parameter parameter_;
    double position_;
};

}  // namespace orvalo::effect::ui
