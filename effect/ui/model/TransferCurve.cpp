#include "effect/ui/model/TransferCurve.h"

#include <cmath>

#include "effect/dsp/GainComputer.h"

namespace orvalo::effect::ui {

namespace {

constexpr float quietest = 1e-6F;

float amplitude(float decibels) {
    return std::pow(10.0F, 0.05F * decibels);
}

float steadyReduction(const ParameterValues& values, float input) {
    const float reduction = GainComputer::reduction(
        input, values[Parameter::threshold], GainComputer::slopeFromRatio(values[Parameter::ratio]),
        values[Parameter::knee]);
    // The largest range is no limit.
    const float most = values[Parameter::range];
    return most < parameterRanges[static_cast<std::size_t>(Parameter::range)].maximum
               ? std::fmin(reduction, most)
               : reduction;
}

/// As GainStage computes it.
float makeup(const ParameterValues& values) {
    return values.isOn(Parameter::autoMakeup) ? 0.5F * steadyReduction(values, 0.0F)
                                              : values[Parameter::makeup];
}

}  // namespace

float gainInForce(const ParameterValues& values, float reduction, float ducking) {
    if (!(values[Parameter::enabled] > 0.0F)) {
        return 0.0F;
    }
    const float mix = 0.01F * values[Parameter::mix];
    const float wet = amplitude(makeup(values) - reduction);
    const float mixed = (1.0F - mix) + mix * wet;
    return 20.0F * std::log10(std::fmax(mixed, quietest)) + values[Parameter::output] - ducking;
}

float steadyOutput(const ParameterValues& values, float input) {
    return input + gainInForce(values, steadyReduction(values, input), 0.0F);
}

}  // namespace orvalo::effect::ui
