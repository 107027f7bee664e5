#include "effect/ui/model/FilterPlot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "effect/dsp/SideChainFilter.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

/// The gain in dB that the effect's filter has for a sine.
double measured(float highPass, float lowPass, double hertz) {
    constexpr double rate = 192000.0;
    SideChainFilter filter(rate);
    filter.configure(highPass, lowPass);
    std::vector<float> left(192000);
    for (std::size_t i = 0; i < left.size(); ++i) {
        const double angle = 2.0 * std::numbers::pi * hertz * static_cast<double>(i) / rate;
        left[i] = static_cast<float>(std::sin(angle));
    }
    auto right = left;
    filter.process(left.data(), right.data(), static_cast<std::uint32_t>(left.size()));
    double power = 0.0;
    for (std::size_t i = left.size() / 2; i < left.size(); ++i) {
        power += static_cast<double>(left[i]) * static_cast<double>(left[i]);
    }
    return 10.0 * std::log10(4.0 * power / static_cast<double>(left.size()));
}

TEST(FilterPlot, ShowsTheFilterOfTheEffect) {
    for (const auto& [high, low] :
         {std::pair(20.0F, 20000.0F), {120.0F, 20000.0F}, {20.0F, 5000.0F}, {200.0F, 2000.0F}}) {
        ParameterValues values;
        values.set(Parameter::sideChainHighPass, high);
        values.set(Parameter::sideChainLowPass, low);
        for (const double hertz : {50.0, 100.0, 200.0, 1000.0, 5000.0, 10000.0}) {
            EXPECT_NEAR(sideChainGain(values, hertz), measured(high, low, hertz), 0.15)
                << high << ' ' << low << ' ' << hertz;
        }
    }
}

TEST(FilterPlot, FrequenciesAreLogarithmic) {
    const FilterPlot plot({10.0, 20.0, 300.0, 66.0});
    EXPECT_EQ(plot.x(20.0), 10.0);
    EXPECT_NEAR(plot.x(200.0), 110.0, 1e-9);
    EXPECT_NEAR(plot.x(20000.0), 310.0, 1e-9);
    EXPECT_NEAR(FilterPlot::hertzAt(2.0 / 3.0), 2000.0, 1e-9);
    EXPECT_EQ(plot.y(6.0), 20.0);
    EXPECT_EQ(plot.y(0.0), 26.0);
    EXPECT_EQ(plot.y(-200.0), 86.0);
}

}  // namespace
