#include "effect/dsp/Processor.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "effect/dsp/Extremes.h"
#include "effect/dsp/VectorClones.h"

namespace orvalo::effect {

namespace {

/// In seconds.
constexpr double truePeakHold = 0.25;
/// In dB: more than the rounding errors of the meter's level.
constexpr float unseenBelow = 0.001F;

/// Copies samples and returns the highest absolute value of the copies. NaN, infinite and huge ones
/// become 0, because the state would never recover from them.
inline float copyUsable(const float* from, float* to, std::uint32_t count) {
    constexpr float largest = 1e15F;
    return copyHighest(from, to, count,
                       [](float value) { return std::abs(value) <= largest ? value : 0.0F; });
}

/// Sets `to` to the part `share` of `from` and the rest of itself.
void crossFade(StereoChunk& to, const StereoChunk& from, const Chunk& share, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        to.left[i] = (1.0F - share[i]) * to.left[i] + share[i] * from.left[i];
        to.right[i] = (1.0F - share[i]) * to.right[i] + share[i] * from.right[i];
    }
}

}  // namespace

std::uint32_t Processor::longestLookAhead(double sampleRate) {
    const auto longest = static_cast<double>(range(Parameter::lookAhead).maximum);
    return static_cast<std::uint32_t>(std::ceil(0.001 * longest * sampleRate));
}

std::uint32_t Processor::longestLatency(double sampleRate, const TruePeakLimiter& limiter) {
    return longestLookAhead(sampleRate) + OversampledGain::latency + limiter.latency();
}

Processor::Processor(double sampleRate)
    : sampleRate_(sampleRate),
      beat_(sampleRate),
      ducker_(sampleRate),
      filter_(sampleRate),
      compressor_(sampleRate),
      trigger_(sampleRate),
      enabled_(sampleRate),
      listen_(sampleRate),
      oversampled_{OversampledGain(sampleRate, 2), OversampledGain(sampleRate, 4)},
      limiter_(sampleRate),
      delays_{DelayLine(longestLatency(sampleRate, limiter_)),
              DelayLine(longestLatency(sampleRate, limiter_))},
      listenDelays_{delays_},
      duckingDelay_(longestLookAhead(sampleRate) + OversampledGain::latencyBeforeGain),
      spectrum_(sampleRate),
      inputMeter_(sampleRate),
      outputMeter_(sampleRate),
      truePeakMeter_(sampleRate, truePeakHold) {}

void Processor::reset() {
    beat_.reset();
    ducker_.reset();
    filter_.reset();
    spectrum_.stop();
    compressor_.reset();
    trigger_.reset();
    activeOversampling_ = nullptr;
    isStaged_ = isLimiting_ = isListening_ = false;
    deepestReduction_ = deepestDucking_ = 0.0F;
    inputMeter_.reset();
    outputMeter_.reset();
    truePeakMeter_.reset();
    truePeakLeft_.reset();
    truePeakRight_.reset();
    fresh_ = true;
}

void Processor::beginBlock(const ParameterValues& values, std::uint32_t frames) {
    if (fresh_ || !(values == values_)) {
        values_ = values;
        configure(values);
        fresh_ = false;
    }
    inputPeak_ = 0.0F;
    outputPeak_ = 0.0F;
    frames_ = frames;
    unseenTruePeak_ = amplitudeFromDecibels(truePeakMeter_.levelAfter(frames) - unseenBelow);
    highestTruePeak_ = unseenTruePeak_;
    // An empty block has no depth of its own.
    if (frames != 0) {
        deepestReduction_ = 0.0F;
        deepestDucking_ = 0.0F;
    }
}

void Processor::configure(const ParameterValues& values) {
    enabled_.moveTo(values.isOn(Parameter::enabled) ? 1.0F : 0.0F, fresh_);
    filter_.configure(values[Parameter::sideChainHighPass], values[Parameter::sideChainLowPass]);
    isExternal_ = values.isOn(Parameter::sideChainSource);

    const auto channel = values.whole(Parameter::midiChannel);
    const auto chosen = static_cast<std::uint8_t>(channel == 0 ? 0 : channel - 1);
    ducker_.configure(values[Parameter::duckDepth], values[Parameter::duckRelease],
                      channel == 0 ? std::nullopt : std::optional(chosen));
    beat_.configure({.isOn = values.isOn(Parameter::beat),
                     .division = values.whole(Parameter::beatDivision),
                     .offset = 0.01 * static_cast<double>(values[Parameter::beatOffset]),
                     .length = 0.01 * static_cast<double>(values[Parameter::beatLength]),
                     .tempo = static_cast<double>(values[Parameter::beatTempo])});
    trigger_.configure({.level = values[Parameter::triggerLevel],
                        .note = values.whole(Parameter::triggerNote),
                        .channel = chosen,
                        .armed = values.isOn(Parameter::enabled)});
    configureGain(values);
    configureStages(values);
}

void Processor::configureGain(const ParameterValues& values) {
    const auto factor = values.whole(Parameter::oversampling);
    OversampledGain* const asked = factor == 0 ? nullptr : &oversampled_.at(factor - 1U);
    const bool isSame = asked == activeOversampling_;
    if (asked != nullptr) {
        asked->configure(values, fresh_ || !isSame);
    } else {
        compressor_.configure(values, fresh_ || !isSame);
    }
    if (isSame) {
        return;
    }
    const Compressor& last =
        activeOversampling_ == nullptr ? compressor_ : activeOversampling_->compressor();
    if (asked != nullptr) {
        asked->start(last);
    } else {
        compressor_.continueFrom(last);
    }
    activeOversampling_ = asked;
}

void Processor::configureStages(const ParameterValues& values) {
    isMidSide_ = values.isOn(Parameter::midSide);
    lookAhead_ = static_cast<std::uint32_t>(
        std::lround(0.001 * static_cast<double>(values[Parameter::lookAhead]) * sampleRate_));
    const bool wasLimiting = isLimiting_;
    isLimiting_ = values.isOn(Parameter::ceilingOn);
    limiter_.setCeiling(values[Parameter::ceiling], fresh_ || !wasLimiting);
    if (isLimiting_ && !wasLimiting) {
        limiter_.reset();
    }
    latency_ = lookAhead_ + (activeOversampling_ == nullptr ? 0 : OversampledGain::latency) +
               (isLimiting_ ? limiter_.latency() : 0);

    const bool wasListening = isListening_;
    listen_.moveTo(values.isOn(Parameter::sideChainListen) ? 1.0F : 0.0F, fresh_);
    isListening_ = listen_.isMoving() || listen_.target() > 0.0F;
    if (isListening_ && !wasListening) {
        for (auto& delay : listenDelays_) {
            delay.reset();
        }
    }
    const bool wasStaged = isStaged_;
    isStaged_ = latency_ != 0 || isListening_ || isMidSide_;
    if (isStaged_ && !wasStaged) {
        duckingDelay_.reset();
        for (auto& delay : delays_) {
            delay.reset();
        }
    }
}

void Processor::setSideChain(const float* left, const float* right) {
    sideChain_ = {left, right};
}

ORVALO_VECTOR_CLONES
void Processor::process(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
                        std::uint32_t first, std::uint32_t end, MidiOutput& midi) {
    while (first < end) {
        const std::uint32_t count = std::min({end - first, chunkFrames, beat_.framesToEdge()});
        ducker_.setBeat(beat_.isDown());
        // Copies: an output may be the other channel's input.
        StereoChunk signal;
        const float inputLeft = copyUsable(inLeft + first, signal.left.data(), count);
        const float inputRight = copyUsable(inRight + first, signal.right.data(), count);
        inputPeak_ = std::max({inputPeak_, inputLeft, inputRight});
        processChunk(signal, first, count, midi);
        const float left = copyHighest(signal.left.data(), outLeft + first, count, std::identity());
        const float right =
            copyHighest(signal.right.data(), outRight + first, count, std::identity());
        measureOutput(signal, left, right, count);
        beat_.advance(count);
        first += count;
    }
}

ORVALO_VECTOR_CLONES
void Processor::processChunk(StereoChunk& signal, std::uint32_t first, std::uint32_t count,
                             MidiOutput& midi) {
    const bool isExternal = isExternal_ && sideChain_[0] != nullptr && sideChain_[1] != nullptr;
    StereoChunk own;
    if (isExternal) {
        copyUsable(sideChain_[0] + first, own.left.data(), count);
        copyUsable(sideChain_[1] + first, own.right.data(), count);
    } else if (filter_.isOn()) {
        own = signal;
    }
    filter_.process(own.left.data(), own.right.data(), count);
    const StereoChunk& key = isExternal || filter_.isOn() ? own : signal;
    if (spectrum_.isWatched()) {
        spectrum_.process(key.left.data(), key.right.data(), count);
    }

    Ducking ducking;
    ducking.isSteady = ducker_.isSteady();
    ducker_.process(ducking.decibels.data(), count);
    Compressor::Gains gains;
    if (isStaged_) {
        processInStages(signal, key, ducking, gains, count);
    } else {
        processDirectly(signal, key, ducking, gains, count);
    }
    trigger_.process(gains.reduction.data(), gains.held.data(), count, first, midi);
    deepestReduction_ = highest(gains.reduction.data(), count, deepestReduction_);
    deepestDucking_ = ducking.isSteady ? std::max(deepestDucking_, ducking.decibels[0])
                                       : highest(ducking.decibels.data(), count, deepestDucking_);
}

void Processor::measureOutput(const StereoChunk& signal, float left, float right,
                              std::uint32_t count) {
    outputPeak_ = std::max({outputPeak_, left, right});
    highestTruePeak_ = truePeakLeft_.highest(signal.left.data(), count, left, highestTruePeak_);
    highestTruePeak_ = truePeakRight_.highest(signal.right.data(), count, right, highestTruePeak_);
}

ORVALO_VECTOR_CLONES
void Processor::processDirectly(StereoChunk& signal, const StereoChunk& key, const Ducking& ducking,
                                Compressor::Gains& gains, std::uint32_t count) {
    compressor_.process(key.left.data(), key.right.data(), ducking, gains, count);
    if (enabled_.isMoving() || enabled_.target() != 1.0F) {
        Chunk enabled;
        enabled_.fill(enabled.data(), count);
        for (std::uint32_t i = 0; i < count; ++i) {
            gains.first[i] = (1.0F - enabled[i]) + enabled[i] * gains.first[i];
        }
        for (std::uint32_t i = 0; !gains.areSame && i < count; ++i) {
            gains.second[i] = (1.0F - enabled[i]) + enabled[i] * gains.second[i];
        }
    }
    signal.multiply(gains.first, gains.ofSecond(), count);
}

ORVALO_VECTOR_CLONES
void Processor::processInStages(StereoChunk& signal, const StereoChunk& input,
                                const Ducking& ducking, Compressor::Gains& gains,
                                std::uint32_t count) {
    // A copy: the key may be the signal itself.
    StereoChunk key = input;
    StereoChunk listened;
    if (isListening_) {
        listened = key;
    }
    StereoChunk dry;
    delay(signal, dry, count);
    // A note ducks the frame with which it arrived.
    Ducking delayedDucking;
    duckingDelay_.write(ducking.decibels.data(), count);
    duckingDelay_.read(
        lookAhead_ + (activeOversampling_ == nullptr ? 0 : OversampledGain::latencyBeforeGain),
        delayedDucking.decibels.data(), count);

    if (isMidSide_) {
        signal.toMidSide(count);
        key.toMidSide(count);
    }
    if (activeOversampling_ != nullptr) {
        activeOversampling_->process(signal, key, delayedDucking, gains, count);
    } else {
        compressor_.process(key.left.data(), key.right.data(), delayedDucking, gains, count);
        signal.multiply(gains.first, gains.ofSecond(), count);
    }
    if (isMidSide_) {
        signal.fromMidSide(count);
    }
    if (isLimiting_) {
        limiter_.process(signal.left.data(), signal.right.data(), count);
    }
    if (isListening_) {
        mixListened(signal, listened, count);
    }
    // 1 - enabled, so that the bypassed signal is exact.
    Chunk share;
    enabled_.fill(share.data(), count);
    for (std::uint32_t i = 0; i < count; ++i) {
        share[i] = 1.0F - share[i];
    }
    crossFade(signal, dry, share, count);
}

void Processor::delay(StereoChunk& signal, StereoChunk& dry, std::uint32_t count) {
    delays_[0].write(signal.left.data(), count);
    delays_[1].write(signal.right.data(), count);
    delays_[0].read(latency_, dry.left.data(), count);
    delays_[1].read(latency_, dry.right.data(), count);
    delays_[0].read(lookAhead_, signal.left.data(), count);
    delays_[1].read(lookAhead_, signal.right.data(), count);
}

void Processor::mixListened(StereoChunk& signal, const StereoChunk& key, std::uint32_t count) {
    StereoChunk delayed;
    listenDelays_[0].write(key.left.data(), count);
    listenDelays_[1].write(key.right.data(), count);
    listenDelays_[0].read(latency_, delayed.left.data(), count);
    listenDelays_[1].read(latency_, delayed.right.data(), count);
    Chunk share;
    listen_.fill(share.data(), count);
    crossFade(signal, delayed, share, count);
}

Processor::Meters Processor::endBlock() {
    inputMeter_.update(inputPeak_, frames_);
    outputMeter_.update(outputPeak_, frames_);
    truePeakMeter_.update(highestTruePeak_ > unseenTruePeak_ ? highestTruePeak_ : 0.0F, frames_);
    const bool isEnabled = values_.isOn(Parameter::enabled);
    return {.gainReduction = isEnabled ? deepestReduction_ : 0.0F,
            .ducking = isEnabled ? deepestDucking_ : 0.0F,
            .inputLevel = inputMeter_.level(),
            .outputLevel = outputMeter_.level(),
            .truePeak = truePeakMeter_.level()};
}

}  // namespace orvalo::effect
