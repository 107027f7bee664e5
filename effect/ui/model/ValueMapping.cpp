#include "effect/ui/model/ValueMapping.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "effect/ui/model/Control.h"

namespace orvalo::effect::ui {

namespace {

/// The next multiple of `step` above (direction > 0) or below a value. Values within a thousandth
/// of a step of a multiple count as that multiple.
double nextMultiple(double value, double step, int direction) {
    constexpr double tolerance = 1e-3;
    const double multiple = value / step;
    return direction > 0 ? std::floor(multiple + tolerance) + 1.0
                         : std::ceil(multiple - tolerance) - 1.0;
}

/// The steps between the round values of a decade: from which leading digits on which step applies.
struct DecadeStep {
    double from;
    double step;
    double fineStep;
};
constexpr std::array<DecadeStep, 3> decadeSteps{
    {{1.0, 0.2, 0.02}, {2.0, 0.5, 0.05}, {5.0, 1.0, 0.1}}};

/// The next round value of a logarithmic taper.
double nextRound(double value, int direction, bool fine) {
    constexpr double tolerance = 1e-6;
    // Below a boundary such as 1, 2 or 5 the smaller step applies.
    const double at = value * (1.0 + direction * tolerance);
    const double decade = std::pow(10.0, std::floor(std::log10(at)));
    const double leading = at / decade;
    std::size_t i = 0;
    while (i + 1 < decadeSteps.size() && leading >= decadeSteps[i + 1].from) {
        ++i;
    }
    const double step = decade * (fine ? decadeSteps[i].fineStep : decadeSteps[i].step);
    return nextMultiple(value, step, direction) * step;
}

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
    const int direction = steps > 0 ? 1 : -1;
    const double step = fine ? how.fineStep : how.step;
    double at = value;
    for (int i = 0; i != steps; i += direction) {
        at = how.taper == Taper::logarithmic ? nextRound(at, direction, fine)
                                             : nextMultiple(at, step, direction) * step;
        at = range(parameter).clamp(static_cast<float>(at));
    }
    return rounded(parameter, static_cast<float>(at));
}

float KnobDrag::move(double share, bool fine) {
    position_ = std::clamp(position_ + share * (fine ? fineShare : 1.0), 0.0, 1.0);
    return rounded(parameter_, valueAt(parameter_, position_));
}

}  // namespace orvalo::effect::ui
