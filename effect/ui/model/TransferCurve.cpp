#include "effect/ui/model/TransferCurve.h"

#include <cmath>

#include "effect/dsp/GainComputer.h"

namespace orvalo::effect::ui {

namespace {

constexpr float quietest = 1e-6F;

float amplitude(float decibels) {
    return std::pow(10.0F, 0.05F * decibels);
}

}  // namespace

float gainInForce(const ParameterValues& values, float reduction, float ducking) {
    if (!(values[Parameter::enabled] > 0.0F)) {
        return 0.0F;
    }
    const float mix = 0.01F * values[Parameter::mix];
    const float wet = amplitude(values[Parameter::makeup] - reduction);
    const float mixed = (1.0F - mix) + mix * wet;
    return 20.0F * std::log10(std::fmax(mixed, quietest)) + values[Parameter::output] - ducking;
}

float steadyOutput(const ParameterValues& values, float input) {
    const float reduction = GainComputer::reduction(
        input, values[Parameter::threshold], GainComputer::slopeFromRatio(values[Parameter::ratio]),
        values[Parameter::knee]);
    return input + gainInForce(values, reduction, 0.0F);
}

}  // namespace orvalo::effect::ui
