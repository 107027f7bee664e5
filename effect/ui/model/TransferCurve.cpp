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
    if (!values.isOn(Parameter::enabled)) {
        return 0.0F;
    }
    const float mix = 0.01F * values[Parameter::mix];
    const float wet = amplitude(GainComputer::makeup(values) - reduction);
    const float mixed = (1.0F - mix) + mix * wet;
    return 20.0F * std::log10(std::fmax(mixed, quietest)) + values[Parameter::output] - ducking;
}

float steadyOutput(const ParameterValues& values, float input) {
    return input + gainInForce(values, GainComputer::reduction(values, input), 0.0F);
}

}  // namespace orvalo::effect::ui
