#include "effect/ui/model/ValueMapping.h"

#include <algorithm>
#include <cmath>

#include "effect/ui/model/Control.h"

namespace orvalo::effect::ui {

namespace {

double threeDigits(double value) {
    const double factor = std::pow(10.0, 2.0 - std::floor(std::log10(value)));
    return std::round(value * factor) / factor;
}

/// Rounds to a multiple of grain, which is 1 / n for a whole n. Divides by n instead of multiplying
/// by grain, so that 0.1 gives the nearest double.
double toGrain(double value, double grain) {
    const double perUnit = std::round(1.0 / grain);
    return std::round(value * perUnit) / perUnit;
}

}  // namespace

double positionOf(Parameter parameter, float value) {
    const double least = range(parameter).minimum;
    const double most = range(parameter).maximum;
    const double at = range(parameter).clamp(value);
    if (control(parameter).taper == Taper::logarithmic) {
        return std::log(at / least) / std::log(most / least);
    }
    return (at - least) / (most - least);
}

float valueAt(Parameter parameter, double position) {
    const auto& ends = range(parameter);
    const double least = ends.minimum;
    const double most = ends.maximum;
    const double at = std::clamp(position, 0.0, 1.0);
    const double value = control(parameter).taper == Taper::logarithmic
                             ? least * std::pow(most / least, at)
                             : least + at * (most - least);
    return ends.clamp(static_cast<float>(value));
}

float rounded(Parameter parameter, float value) {
    const auto& ends = range(parameter);
    const double at = ends.clamp(value);
    switch (control(parameter).taper) {
        case Taper::whole:
            return ends.clamp(static_cast<float>(std::round(at)));
        case Taper::logarithmic:
            return ends.clamp(static_cast<float>(threeDigits(at)));
        case Taper::linear:
            break;
    }
    return ends.clamp(static_cast<float>(toGrain(at, control(parameter).fineStep)));
}

float stepped(Parameter parameter, float value, int steps, bool fine) {
    const auto& how = control(parameter);
    const double by = steps * (fine ? how.fineStep : how.step);
    if (how.taper == Taper::logarithmic) {
        return rounded(parameter, valueAt(parameter, positionOf(parameter, value) + by));
    }
    return rounded(parameter, static_cast<float>(static_cast<double>(value) + by));
}

float KnobDrag::move(double share, bool fine) {
    position_ = std::clamp(position_ + share * (fine ? fineShare : 1.0), 0.0, 1.0);
    return rounded(parameter_, valueAt(parameter_, position_));
}

}  // namespace orvalo::effect::ui
