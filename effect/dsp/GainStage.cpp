#include "effect/dsp/GainStage.h"

#include "effect/dsp/Decibels.h"
#include "effect/dsp/GainComputer.h"

namespace orvalo::effect {

GainStage::GainStage(double sampleRate)
    : threshold_(sampleRate),
      slope_(sampleRate),
      knee_(sampleRate),
      makeup_(sampleRate),
      mix_(sampleRate),
      output_(sampleRate),
      enabled_(sampleRate) {}

void GainStage::configure(const ParameterValues& values, bool atOnce) {
    const auto apply = [atOnce](SmoothedValue& value, float target) {
        if (atOnce) {
            value.snapTo(target);
        } else {
            value.setTarget(target);
        }
    };
    apply(threshold_, values[Parameter::threshold]);
    apply(slope_, GainComputer::slopeFromRatio(values[Parameter::ratio]));
    apply(knee_, values[Parameter::knee]);
    apply(makeup_, values[Parameter::makeup]);
    apply(mix_, 0.01F * values[Parameter::mix]);
    apply(output_, values[Parameter::output]);
    apply(enabled_, values[Parameter::enabled] > 0.0F ? 1.0F : 0.0F);
}

void GainStage::askedReduction(const float* amplitude, float* asked, std::uint32_t count) {
    Chunk threshold;
    Chunk slope;
    Chunk knee;
    threshold_.fill(threshold.data(), count);
    slope_.fill(slope.data(), count);
    knee_.fill(knee.data(), count);
    for (std::uint32_t i = 0; i < count; ++i) {
        asked[i] = GainComputer::reduction(decibelsFromAmplitude(amplitude[i]), threshold[i],
                                           slope[i], knee[i]);
    }
}

void GainStage::gain(const float* reduction, const float* ducking, float* gain,
                     std::uint32_t count) {
    Chunk makeup;
    Chunk mix;
    Chunk output;
    Chunk enabled;
    makeup_.fill(makeup.data(), count);
    mix_.fill(mix.data(), count);
    output_.fill(output.data(), count);
    enabled_.fill(enabled.data(), count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const float wet = amplitudeFromDecibels(makeup[i] - reduction[i]);
        const float mixed = (1.0F - mix[i]) + mix[i] * wet;
        const float processed = mixed * amplitudeFromDecibels(output[i] - ducking[i]);
        gain[i] = (1.0F - enabled[i]) + enabled[i] * processed;
    }
}

}  // namespace orvalo::effect
