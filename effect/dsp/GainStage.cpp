#include "effect/dsp/GainStage.h"

#include <algorithm>

#include "effect/dsp/Decibels.h"
#include "effect/dsp/GainComputer.h"

namespace orvalo::effect {

namespace {

/// More than the curve can give for a sample that the effect takes: no limit.
constexpr float unlimited = 400.0F;

float rangeOf(const ParameterValues& values) {
    const float most = parameterRanges[static_cast<std::size_t>(Parameter::range)].maximum;
    const float range = values[Parameter::range];
    return range < most ? range : unlimited;
}

}  // namespace

GainStage::GainStage(double sampleRate)
    : threshold_(sampleRate),
      slope_(sampleRate),
      knee_(sampleRate),
      range_(sampleRate),
      makeup_(sampleRate),
      mix_(sampleRate),
      output_(sampleRate),
      link_(sampleRate),
      midAmount_(sampleRate),
      sideAmount_(sampleRate) {}

float GainStage::autoMakeup(const ParameterValues& values) {
    const float atFullScale = GainComputer::reduction(
        0.0F, values[Parameter::threshold], GainComputer::slopeFromRatio(values[Parameter::ratio]),
        values[Parameter::knee]);
    return 0.5F * std::min(atFullScale, rangeOf(values));
}

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
    apply(range_, rangeOf(values));
    apply(makeup_,
          values.isOn(Parameter::autoMakeup) ? autoMakeup(values) : values[Parameter::makeup]);
    apply(mix_, 0.01F * values[Parameter::mix]);
    apply(output_, values[Parameter::output]);
    apply(link_, 0.01F * values[Parameter::link]);
    isMidSide_ = values.isOn(Parameter::midSide);
    // Left and right have no amounts.
    apply(midAmount_, isMidSide_ ? 0.01F * values[Parameter::midAmount] : 1.0F);
    apply(sideAmount_, isMidSide_ ? 0.01F * values[Parameter::sideAmount] : 1.0F);
}

bool GainStage::isLinked() const {
    return !isMidSide_ && !midAmount_.isMoving() && !sideAmount_.isMoving() && !link_.isMoving() &&
           link_.target() == 1.0F;
}

void GainStage::askedReduction(const float* amplitude, float* asked, std::uint32_t count) {
    Curve curve;
    fill(curve, count);
    ask(curve, amplitude, asked, count);
}

void GainStage::askedReductions(const Chunk& first, const Chunk& second, Chunk& firstAsked,
                                Chunk& secondAsked, std::uint32_t count) {
    Curve curve;
    fill(curve, count);
    ask(curve, first.data(), firstAsked.data(), count);
    ask(curve, second.data(), secondAsked.data(), count);
    Chunk link;
    link_.fill(link.data(), count);
    for (std::uint32_t i = 0; i < count; ++i) {
        // The curve rises, so the deeper reduction is that of the louder channel.
        const float deeper = std::max(firstAsked[i], secondAsked[i]);
        firstAsked[i] = (1.0F - link[i]) * firstAsked[i] + link[i] * deeper;
        secondAsked[i] = (1.0F - link[i]) * secondAsked[i] + link[i] * deeper;
    }
}

void GainStage::gain(const float* reduction, const float* ducking, float* gain,
                     std::uint32_t count) {
    Levels levels;
    fill(levels, count);
    GainStage::gain(levels, reduction, ducking, gain, count);
}

void GainStage::gains(Chunk& first, Chunk& second, const float* ducking, Chunk& firstGain,
                      Chunk& secondGain, std::uint32_t count) {
    Levels levels;
    fill(levels, count);
    Chunk amount;
    midAmount_.fill(amount.data(), count);
    for (std::uint32_t i = 0; i < count; ++i) {
        first[i] *= amount[i];
    }
    sideAmount_.fill(amount.data(), count);
    for (std::uint32_t i = 0; i < count; ++i) {
        second[i] *= amount[i];
    }
    gain(levels, first.data(), ducking, firstGain.data(), count);
    gain(levels, second.data(), ducking, secondGain.data(), count);
}

void GainStage::fill(Curve& curve, std::uint32_t count) {
    threshold_.fill(curve.threshold.data(), count);
    slope_.fill(curve.slope.data(), count);
    knee_.fill(curve.knee.data(), count);
    range_.fill(curve.range.data(), count);
}

void GainStage::fill(Levels& levels, std::uint32_t count) {
    makeup_.fill(levels.makeup.data(), count);
    mix_.fill(levels.mix.data(), count);
    output_.fill(levels.output.data(), count);
}

void GainStage::ask(const Curve& curve, const float* amplitude, float* asked, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        const float reduction = GainComputer::reduction(
            decibelsFromAmplitude(amplitude[i]), curve.threshold[i], curve.slope[i], curve.knee[i]);
        asked[i] = std::min(reduction, curve.range[i]);
    }
}

void GainStage::gain(const Levels& levels, const float* reduction, const float* ducking,
                     float* gain, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        const float wet = amplitudeFromDecibels(levels.makeup[i] - reduction[i]);
        const float mixed = (1.0F - levels.mix[i]) + levels.mix[i] * wet;
        gain[i] = mixed * amplitudeFromDecibels(levels.output[i] - ducking[i]);
    }
}

}  // namespace orvalo::effect
