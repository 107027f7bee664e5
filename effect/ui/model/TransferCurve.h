#pragma once

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// The effect's whole gain in dB for a gain reduction and a ducking in dB, as its signal path
/// adds them up: make-up, mix, output and bypass included.
float gainInForce(const ParameterValues& values, float reduction, float ducking);

/// The level in dB that a steady level in dB comes out with when no notes duck.
float steadyOutput(const ParameterValues& values, float input);

}  // namespace orvalo::effect::ui
