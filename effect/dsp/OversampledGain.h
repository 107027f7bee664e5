#pragma once

#include <array>
#include <cstdint>

#include "effect/dsp/Compressor.h"
#include "effect/dsp/Oversampler.h"
#include "effect/dsp/StereoChunk.h"

namespace orvalo::effect {

/// The compressor at a multiple of the sample rate: level, curve, ballistics and the product of
/// signal and gain, so that what the gain's movement adds above half the sample rate is filtered
/// instead of folded back.
class OversampledGain {
  public:
    static constexpr std::uint32_t latency = Oversampler::latency;
    /// The part of the latency before the gain is applied.
    static constexpr std::uint32_t latencyBeforeGain = latency / 2;

    /// factor: 2 or 4.
    OversampledGain(double sampleRate, std::uint32_t factor);

    void configure(const ParameterValues& values, bool atOnce) {
        compressor_.configure(values, atOnce);
    }
    void reset();
    /// Starts with the reduction of a compressor.
    void start(const Compressor& other);
    const Compressor& compressor() const { return compressor_; }

    /// Multiplies the signal with the gain for the key, both delayed by latency. gains: receives
    /// reduction and held peak of the frames. count: at most chunkFrames.
    void process(StereoChunk& signal, const StereoChunk& key, const Ducking& ducking,
                 Compressor::Gains& gains, std::uint32_t count);

  private:
    void processSpan(StereoChunk& signal, const StereoChunk& key, const Ducking& ducking,
                     Compressor::Gains& gains, std::uint32_t first, std::uint32_t count);

    std::uint32_t factor_;
    Compressor compressor_;
    std::array<Oversampler, 2> signal_;
    std::array<Oversampler, 2> key_;
};

}  // namespace orvalo::effect
