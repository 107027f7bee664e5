#pragma once

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// Where a value lies on its knob's way, 0 to 1.
double positionOf(Parameter parameter, float value);

/// The value at a position; positions beyond the ends are the ends. Not rounded.
float valueAt(Parameter parameter, double position);

/// The nearest value that a turned knob stops at: steps of a tenth of a dB and of a per cent, three
/// digits of a time or a ratio, whole numbers of notes and channels. Always within the range.
float rounded(Parameter parameter, float value);

/// The value as many steps further, fewer when negative.
float stepped(Parameter parameter, float value, int steps, bool fine);

/// A knob that is being dragged. It keeps the place between the values that the knob stops at, so
/// that slow and fine moves add up.
class KnobDrag {
  public:
    /// How much slower fine control is.
    static constexpr double fineShare = 0.1;

    KnobDrag(Parameter parameter, float value)
        : parameter_(parameter), position_(positionOf(parameter, value)) {}

    Parameter parameter() const { return parameter_; }

    /// The value after a move up by a share of the whole way, down when negative.
    float move(double share, bool fine);

  private:
    Parameter parameter_;
    double position_;
};

}  // namespace orvalo::effect::ui
