#include "programs/easing/CurveSamples.h"

#include <algorithm>

#include "animation/EasingCurve.h"

namespace orvalo {

CurveSamples::CurveSamples(EnumEasing type) {
    constexpr int steps = 120;
    const auto curve = easingCurves.at(static_cast<std::size_t>(rawValue(type)));
    for (int step = 0; step <= steps; ++step) {
        values.push_back(static_cast<double>(curve(step, 0.0F, 1.0F, steps)));
    }
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    least = std::min(0.0, *lowest);
    greatest = std::max(1.0, *highest);
}

}  // namespace orvalo
