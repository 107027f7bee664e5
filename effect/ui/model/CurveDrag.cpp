#include "effect/ui/model/CurveDrag.h"

#include <algorithm>

#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/model/TransferCurve.h"
#include "effect/ui/model/ValueMapping.h"

namespace orvalo::effect::ui {

namespace {

/// The ratio at which the curve has the output level at the ratio's point: the output falls while
/// the ratio rises.
float ratioFor(ParameterValues values, double output) {
    double low = 0.0;
    double high = 1.0;
    constexpr int halvings = 24;
    for (int i = 0; i < halvings; ++i) {
        const double middle = 0.5 * (low + high);
        values.set(Parameter::ratio, valueAt(Parameter::ratio, middle));
        (steadyOutput(values, ratioPointLevel) > output ? low : high) = middle;
    }
    return valueAt(Parameter::ratio, 0.5 * (low + high));
}

}  // namespace

CurveDrag::CurveDrag(const Scene& scene, Parameter parameter, const Pointer& at)
    : parameter_(parameter),
      last_(at),
      level_(parameter == Parameter::threshold ? scene.values[Parameter::threshold]
                                               : steadyOutput(scene.values, ratioPointLevel)) {}

float CurveDrag::move(const Scene& scene, const Pointer& to) {
    const CurvePlot plot(scene.layout);
    const double share = to.fine ? KnobDrag::fineShare : 1.0;
    const double right = share * (to.x - last_.x) * plot.perPixelAcross();
    const double up = share * (last_.y - to.y) * plot.perPixelDown();
    last_ = to;
    if (parameter_ == Parameter::threshold) {
        level_ = std::clamp(level_ + right, static_cast<double>(CurvePlot::lowest), 0.0);
        return rounded(parameter_, static_cast<float>(level_));
    }
    ParameterValues ends = scene.values;
    ends.set(Parameter::ratio, range(Parameter::ratio).maximum);
    const double least = steadyOutput(ends, ratioPointLevel);
    ends.set(Parameter::ratio, range(Parameter::ratio).minimum);
    level_ =
        std::clamp(level_ + up, least, static_cast<double>(steadyOutput(ends, ratioPointLevel)));
    return rounded(parameter_, ratioFor(scene.values, level_));
}

}  // namespace orvalo::effect::ui
