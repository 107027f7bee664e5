#include "effect/dsp/GainStage.h"

#include <algorithm>

#include "effect/dsp/Decibels.h"
#include "effect/dsp/Extremes.h"
#include "effect/dsp/GainComputer.h"
#include "effect/dsp/VectorClones.h"

namespace orvalo::effect {

namespace {

/// A value that is the same in every frame.
struct Steady {
    float value;
    float operator[](std::uint32_t /*frame*/) const { return value; }
};

}  // namespace

template <typename Values>
struct GainStage::Curve {
    Values threshold;
    Values slope;
    Values knee;
    Values range;

    void ask(const float* amplitude, float* asked, std::uint32_t count) const {
        for (std::uint32_t i = 0; i < count; ++i) {
            const float reduction = GainComputer::reduction(decibelsFromAmplitude(amplitude[i]),
                                                            threshold[i], slope[i], knee[i]);
            asked[i] = smaller(reduction, range[i]);
        }
    }
};

template <typename Values>
struct GainStage::Levels {
    Values makeup;
    Values mix;
    Values output;

    /// The mix of dry and compressed signal.
    float mixed(std::uint32_t i, float reduction) const {
        const float wet = amplitudeFromDecibels(makeup[i] - reduction);
        return (1.0F - mix[i]) + mix[i] * wet;
    }

    void gain(const float* reduction, const Ducking& ducking, float* gain,
              std::uint32_t count) const {
        for (std::uint32_t i = 0; i < count; ++i) {
            gain[i] =
                mixed(i, reduction[i]) * amplitudeFromDecibels(output[i] - ducking.decibels[i]);
        }
    }

    /// The same for a steady ducking and steady levels: one exponential less.
    void steadyGain(const float* reduction, float ducking, float* gain, std::uint32_t count) const {
        const float factor = amplitudeFromDecibels(output[0] - ducking);
        for (std::uint32_t i = 0; i < count; ++i) {
            gain[i] = mixed(i, reduction[i]) * factor;
        }
    }
};

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

void GainStage::configure(const ParameterValues& values, bool atOnce) {
    threshold_.moveTo(values[Parameter::threshold], atOnce);
    slope_.moveTo(GainComputer::slopeFromRatio(values[Parameter::ratio]), atOnce);
    knee_.moveTo(values[Parameter::knee], atOnce);
    range_.moveTo(GainComputer::mostReduction(values), atOnce);
    makeup_.moveTo(GainComputer::makeup(values), atOnce);
    mix_.moveTo(0.01F * values[Parameter::mix], atOnce);
    output_.moveTo(values[Parameter::output], atOnce);
    link_.moveTo(0.01F * values[Parameter::link], atOnce);
    isMidSide_ = values.isOn(Parameter::midSide);
    // Left and right have no amounts.
    midAmount_.moveTo(isMidSide_ ? 0.01F * values[Parameter::midAmount] : 1.0F, atOnce);
    sideAmount_.moveTo(isMidSide_ ? 0.01F * values[Parameter::sideAmount] : 1.0F, atOnce);
}

bool GainStage::isLinked() const {
    return !isMidSide_ && !midAmount_.isMoving() && !sideAmount_.isMoving() && !link_.isMoving() &&
           link_.target() == 1.0F;
}

ORVALO_VECTOR_CLONES
void GainStage::askedReduction(const float* amplitude, float* asked, std::uint32_t count) {
    if (isCurveMoving()) {
        Curve<Chunk> curve;
        fill(curve, count);
        curve.ask(amplitude, asked, count);
        return;
    }
    const Curve<Steady> curve{
        {threshold_.target()}, {slope_.target()}, {knee_.target()}, {range_.target()}};
    curve.ask(amplitude, asked, count);
}

ORVALO_VECTOR_CLONES
void GainStage::askedReductions(const Chunk& first, const Chunk& second, Chunk& firstAsked,
                                Chunk& secondAsked, std::uint32_t count) {
    Curve<Chunk> curve;
    fill(curve, count);
    curve.ask(first.data(), firstAsked.data(), count);
    curve.ask(second.data(), secondAsked.data(), count);
    Chunk link;
    link_.fill(link.data(), count);
    for (std::uint32_t i = 0; i < count; ++i) {
        // The curve rises, so the deeper reduction is that of the louder channel.
        const float deeper = std::max(firstAsked[i], secondAsked[i]);
        firstAsked[i] = (1.0F - link[i]) * firstAsked[i] + link[i] * deeper;
        secondAsked[i] = (1.0F - link[i]) * secondAsked[i] + link[i] * deeper;
    }
}

ORVALO_VECTOR_CLONES
void GainStage::gain(const float* reduction, const Ducking& ducking, float* gain,
                     std::uint32_t count) {
    if (areLevelsMoving() || !ducking.isSteady) {
        Levels<Chunk> levels;
        fill(levels, count);
        levels.gain(reduction, ducking, gain, count);
        return;
    }
    const Levels<Steady> levels{{makeup_.target()}, {mix_.target()}, {output_.target()}};
    levels.steadyGain(reduction, ducking.decibels[0], gain, count);
}

ORVALO_VECTOR_CLONES
void GainStage::gains(Chunk& first, Chunk& second, const Ducking& ducking, Chunk& firstGain,
                      Chunk& secondGain, std::uint32_t count) {
    Levels<Chunk> levels;
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
    levels.gain(first.data(), ducking, firstGain.data(), count);
    levels.gain(second.data(), ducking, secondGain.data(), count);
}

void GainStage::fill(Curve<Chunk>& curve, std::uint32_t count) {
    threshold_.fill(curve.threshold.data(), count);
    slope_.fill(curve.slope.data(), count);
    knee_.fill(curve.knee.data(), count);
    range_.fill(curve.range.data(), count);
}

void GainStage::fill(Levels<Chunk>& levels, std::uint32_t count) {
    makeup_.fill(levels.makeup.data(), count);
    mix_.fill(levels.mix.data(), count);
    output_.fill(levels.output.data(), count);
}

bool GainStage::isCurveMoving() const {
    return threshold_.isMoving() || slope_.isMoving() || knee_.isMoving() || range_.isMoving();
}

bool GainStage::areLevelsMoving() const {
    return makeup_.isMoving() || mix_.isMoving() || output_.isMoving();
}

}  // namespace orvalo::effect
