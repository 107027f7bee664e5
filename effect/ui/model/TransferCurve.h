#pragma once

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// The effect's total gain in dB for a gain reduction and a ducking in dB, including make-up, mix,
/// output and bypass.
float gainInForce(const ParameterValues& values, float reduction, float ducking);

/// The output level in dB for a steady input level in dB, without ducking.
float steadyOutput(const ParameterValues& values, float input);

}  // namespace orvalo::effect::ui
