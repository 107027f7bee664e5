#include "effect/ui/model/FilterPlot.h"

#include <algorithm>
#include <cmath>

namespace orvalo::effect::ui {

double sideChainGain(const ParameterValues& values, double hertz) {
    // The power that a Butterworth filter of the second order loses.
    const auto loss = [](double ratio) { return 1.0 + std::pow(ratio, 4.0); };
    const double highPass = values[Parameter::sideChainHighPass];
    const double lowPass = values[Parameter::sideChainLowPass];
    double power = 1.0;
    if (highPass > FilterPlot::lowestHertz) {
        power *= loss(highPass / hertz);
    }
    if (lowPass < FilterPlot::highestHertz) {
        power *= loss(hertz / lowPass);
    }
    return -10.0 * std::log10(power);
}

double FilterPlot::x(double hertz) const {
    const double share = std::log(hertz / lowestHertz) / std::log(highestHertz / lowestHertz);
    return area_.x + share * area_.width;
}

double FilterPlot::y(double decibels) const {
    const double share = (highest - decibels) / (highest - lowest);
    return area_.y + std::clamp(share, 0.0, 1.0) * area_.height;
}

double FilterPlot::hertzAt(double share) {
    return lowestHertz * std::pow(highestHertz / lowestHertz, share);
}

}  // namespace orvalo::effect::ui
