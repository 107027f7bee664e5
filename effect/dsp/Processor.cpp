#include "effect/dsp/Processor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "effect/dsp/Chunk.h"

namespace orvalo::effect {

namespace {

/// Copies samples. NaN, infinite and huge ones become 0, because the state would never recover from
/// them.
void copyUsable(const float* from, float* to, std::uint32_t count) {
    constexpr float largest = 1e15F;
    for (std::uint32_t i = 0; i < count; ++i) {
        to[i] = std::abs(from[i]) <= largest ? from[i] : 0.0F;
    }
}

/// The highest of `start` and the values. Several lanes, because a single running maximum could not
/// be vectorised.
float highest(const float* values, std::uint32_t count, float start) {
    constexpr std::uint32_t laneCount = 8;
    std::array<float, laneCount> lanes{};
    lanes.fill(start);
    std::uint32_t i = 0;
    for (; i + laneCount <= count; i += laneCount) {
        for (std::uint32_t lane = 0; lane < laneCount; ++lane) {
            lanes[lane] = std::max(lanes[lane], values[i + lane]);
        }
    }
    float result = *std::max_element(lanes.begin(), lanes.end());
    for (; i < count; ++i) {
        result = std::max(result, values[i]);
    }
    return result;
}

}  // namespace

Processor::Processor(double sampleRate)
    : gainStage_(sampleRate),
      ballistics_(sampleRate),
      beat_(sampleRate),
      ducker_(sampleRate),
      trigger_(sampleRate),
      inputMeter_(sampleRate),
      outputMeter_(sampleRate) {}

void Processor::reset() {
    ballistics_.reset();
    beat_.reset();
    ducker_.reset();
    trigger_.reset();
    inputMeter_.reset();
    outputMeter_.reset();
    fresh_ = true;
}

void Processor::beginBlock(const ParameterValues& values) {
    gainStage_.configure(values, fresh_);
    fresh_ = false;
    ballistics_.setTimes(values[Parameter::attack], values[Parameter::release]);

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
                        .armed = values[Parameter::enabled] > 0.0F});

    inputPeak_ = 0.0F;
    outputPeak_ = 0.0F;
    deepestReduction_ = 0.0F;
    deepestDucking_ = 0.0F;
}

void Processor::process(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
                        std::uint32_t first, std::uint32_t end, MidiOutput& midi) {
    while (first < end) {
        const std::uint32_t count = std::min({end - first, chunkFrames, beat_.framesToEdge()});
        ducker_.setBeat(beat_.isDown());
        processChunk(inLeft + first, inRight + first, outLeft + first, outRight + first, first,
                     count, midi);
        beat_.advance(count);
        first += count;
    }
}

void Processor::processChunk(const float* inLeft, const float* inRight, float* outLeft,
                             float* outRight, std::uint32_t first, std::uint32_t count,
                             MidiOutput& midi) {
    // Copies: an output may be the other channel's input.
    Chunk left;
    Chunk right;
    copyUsable(inLeft, left.data(), count);
    copyUsable(inRight, right.data(), count);

    Chunk amplitude{};
    for (std::uint32_t i = 0; i < count; ++i) {
        amplitude[i] = std::max(std::abs(left[i]), std::abs(right[i]));
    }
    inputPeak_ = highest(amplitude.data(), count, inputPeak_);

    Chunk asked;
    Chunk held;
    Chunk reduction;
    Chunk ducking;
    Chunk gain;
    gainStage_.askedReduction(amplitude.data(), asked.data(), count);
    ballistics_.process(asked.data(), held.data(), reduction.data(), count);
    trigger_.process(reduction.data(), held.data(), count, first, midi);
    ducker_.process(ducking.data(), count);
    gainStage_.gain(reduction.data(), ducking.data(), gain.data(), count);
    deepestReduction_ = highest(reduction.data(), count, deepestReduction_);
    deepestDucking_ = highest(ducking.data(), count, deepestDucking_);

    for (std::uint32_t i = 0; i < count; ++i) {
        left[i] *= gain[i];
        right[i] *= gain[i];
        amplitude[i] *= gain[i];
    }
    outputPeak_ = highest(amplitude.data(), count, outputPeak_);
    std::copy_n(left.data(), count, outLeft);
    std::copy_n(right.data(), count, outRight);
}

Processor::Meters Processor::endBlock(std::uint32_t frames) {
    inputMeter_.update(inputPeak_, frames);
    outputMeter_.update(outputPeak_, frames);
    return {.gainReduction = deepestReduction_,
            .ducking = deepestDucking_,
            .inputLevel = inputMeter_.level(),
            .outputLevel = outputMeter_.level()};
}

}  // namespace orvalo::effect
