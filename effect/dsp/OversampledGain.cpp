#include "effect/dsp/OversampledGain.h"

#include <algorithm>

namespace orvalo::effect {

OversampledGain::OversampledGain(double sampleRate, std::uint32_t factor)
    : factor_(factor),
      compressor_(sampleRate * factor, LevelDetector::Crests::exact),
      signal_{Oversampler(factor), Oversampler(factor)},
      key_{Oversampler(factor), Oversampler(factor)} {}

void OversampledGain::reset() {
    compressor_.reset();
    for (std::size_t i = 0; i < 2; ++i) {
        signal_[i].reset();
        key_[i].reset();
    }
}

void OversampledGain::start(const Compressor& other) {
    reset();
    compressor_.continueFrom(other);
}

void OversampledGain::process(StereoChunk& signal, const StereoChunk& key, const Ducking& ducking,
                              Compressor::Gains& gains, std::uint32_t count) {
    const std::uint32_t most = chunkFrames / factor_;
    for (std::uint32_t first = 0; first < count; first += most) {
        processSpan(signal, key, ducking, gains, first, std::min(most, count - first));
    }
}

void OversampledGain::processSpan(StereoChunk& signal, const StereoChunk& key,
                                  const Ducking& ducking, Compressor::Gains& gains,
                                  std::uint32_t first, std::uint32_t count) {
    StereoChunk fastSignal;
    StereoChunk fastKey;
    signal_[0].up(signal.left.data() + first, fastSignal.left.data(), count);
    signal_[1].up(signal.right.data() + first, fastSignal.right.data(), count);
    key_[0].up(key.left.data() + first, fastKey.left.data(), count);
    key_[1].up(key.right.data() + first, fastKey.right.data(), count);
    Ducking fastDucking;
    fastDucking.isSteady = ducking.isSteady;
    for (std::uint32_t i = 0; i < count * factor_; ++i) {
        fastDucking.decibels[i] = ducking.decibels[first + i / factor_];
    }
    Compressor::Gains fast;
    compressor_.process(fastKey.left.data(), fastKey.right.data(), fastDucking, fast,
                        count * factor_);
    fastSignal.multiply(fast.first, fast.ofSecond(), count * factor_);
    signal_[0].down(fastSignal.left.data(), signal.left.data() + first, count);
    signal_[1].down(fastSignal.right.data(), signal.right.data() + first, count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto from = i * factor_;
        gains.reduction[first + i] =
            *std::max_element(&fast.reduction[from], &fast.reduction[from] + factor_);
        gains.held[first + i] = *std::max_element(&fast.held[from], &fast.held[from] + factor_);
    }
}

}  // namespace orvalo::effect
