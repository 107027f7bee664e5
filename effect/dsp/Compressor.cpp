#include "effect/dsp/Compressor.h"

#include <algorithm>
#include <cmath>

namespace orvalo::effect {

Compressor::Compressor(double sampleRate, LevelDetector::Crests crests)
    : sampleRate_(sampleRate),
      detector_(sampleRate, crests),
      gainStage_(sampleRate),
      ballistics_{Ballistics(sampleRate), Ballistics(sampleRate)} {}

void Compressor::configure(const ParameterValues& values, bool atOnce) {
    gainStage_.configure(values, atOnce);
    detector_.configure(values.isOn(Parameter::rms), values[Parameter::rmsWindow]);
    // The peak must last until the delayed signal has reached it.
    const auto hold = static_cast<double>(values[Parameter::hold] + values[Parameter::lookAhead]);
    for (auto& ballistics : ballistics_) {
        ballistics.setTimes(values[Parameter::attack], values[Parameter::release]);
        ballistics.setHold(static_cast<std::uint32_t>(std::lround(0.001 * hold * sampleRate_)));
        ballistics.setAdaptive(values.isOn(Parameter::adaptive));
    }
}

void Compressor::reset() {
    detector_.reset();
    for (auto& ballistics : ballistics_) {
        ballistics.reset();
    }
    wasLinked_ = true;
}

void Compressor::continueFrom(const Compressor& other) {
    detector_.continueFrom(other.detector_);
    for (std::size_t i = 0; i < ballistics_.size(); ++i) {
        ballistics_[i].continueFrom(other.ballistics_[i]);
    }
    wasLinked_ = other.wasLinked_;
}

bool Compressor::isLinked() const {
    // With equal states, one channel gives what two would give.
    return gainStage_.isLinked() && (wasLinked_ || ballistics_[0].hasStateOf(ballistics_[1]));
}

void Compressor::process(const float* first, const float* second, const Ducking& ducking,
                         Gains& gains, std::uint32_t count) {
    gains.areSame = isLinked();
    if (gains.areSame) {
        processLinked(first, second, ducking, gains, count);
    } else {
        processSeparately(first, second, ducking, gains, count);
    }
}

void Compressor::processLinked(const float* first, const float* second, const Ducking& ducking,
                               Gains& gains, std::uint32_t count) {
    wasLinked_ = true;
    Chunk amplitude;
    Chunk asked;
    detector_.linked(first, second, amplitude.data(), count);
    gainStage_.askedReduction(amplitude.data(), asked.data(), count);
    ballistics_[0].process(asked.data(), gains.held.data(), gains.reduction.data(), count);
    gainStage_.gain(gains.reduction.data(), ducking, gains.first.data(), count);
}

void Compressor::processSeparately(const float* first, const float* second, const Ducking& ducking,
                                   Gains& gains, std::uint32_t count) {
    if (wasLinked_) {
        ballistics_[1].continueFrom(ballistics_[0]);
        wasLinked_ = false;
    }
    std::array<Chunk, 2> amplitude;
    std::array<Chunk, 2> asked;
    std::array<Chunk, 2> held;
    std::array<Chunk, 2> reduction;
    detector_.separate(first, second, amplitude[0].data(), amplitude[1].data(), count);
    gainStage_.askedReductions(amplitude[0], amplitude[1], asked[0], asked[1], count);
    for (std::size_t i = 0; i < 2; ++i) {
        ballistics_[i].process(asked[i].data(), held[i].data(), reduction[i].data(), count);
    }
    gainStage_.gains(reduction[0], reduction[1], ducking, gains.first, gains.second, count);
    for (std::uint32_t i = 0; i < count; ++i) {
        gains.reduction[i] = std::max(reduction[0][i], reduction[1][i]);
        gains.held[i] = std::max(held[0][i], held[1][i]);
    }
}

}  // namespace orvalo::effect
