#include "effect/dsp/SideChainFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvalo::effect {

void SideChainFilter::configure(float highPass, float lowPass) {
    configure(highPass_, Kind::highPass, highPass, highPassOff);
    configure(lowPass_, Kind::lowPass, lowPass, lowPassOff);
}

void SideChainFilter::configure(Biquad& biquad, Kind kind, float frequency, float off) const {
    if (frequency == biquad.frequency) {
        return;
    }
    biquad.frequency = frequency;
    if (frequency == off) {
        biquad.isOn = false;
        return;
    }
    if (!biquad.isOn) {
        biquad.isOn = true;
        biquad.states = {};
    }
    // The formulae need a frequency below half the sample rate.
    const double usable = std::min(static_cast<double>(frequency), 0.45 * sampleRate_);
    const double w = 2.0 * std::numbers::pi * usable / sampleRate_;
    const double alpha = std::sin(w) / std::numbers::sqrt2;
    const double a0 = 1.0 + alpha;
    const double sign = kind == Kind::highPass ? 1.0 : -1.0;
    const double middle = 1.0 + sign * std::cos(w);
    biquad.b0 = 0.5 * middle / a0;
    biquad.b1 = -sign * middle / a0;
    biquad.b2 = biquad.b0;
    biquad.a1 = -2.0 * std::cos(w) / a0;
    biquad.a2 = (1.0 - alpha) / a0;
}

void SideChainFilter::reset() {
    highPass_.states = {};
    lowPass_.states = {};
}

void SideChainFilter::process(float* left, float* right, std::uint32_t count) {
    for (Biquad* biquad : {&highPass_, &lowPass_}) {
        if (biquad->isOn) {
            biquad->process(left, biquad->states[0], count);
            biquad->process(right, biquad->states[1], count);
        }
    }
}

void SideChainFilter::Biquad::process(float* samples, State& state, std::uint32_t count) const {
    double first = state.first;
    double second = state.second;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto in = static_cast<double>(samples[i]);
        const double out = b0 * in + first;
        first = b1 * in - a1 * out + second;
        second = b2 * in - a2 * out;
        samples[i] = static_cast<float>(out);
    }
    state = {.first = first, .second = second};
}

}  // namespace orvalo::effect
