#pragma once

#include <cstdint>

#include "effect/dsp/Chunk.h"
#include "effect/dsp/Parameter.h"
#include "effect/dsp/SmoothedValue.h"

namespace orvalo::effect {

/// The parameters that shape the gain, smoothed, and the two loops that use them: from level to
/// the reduction it asks for, and from the reduction in force to the factor on the signal.
class GainStage {
  public:
    explicit GainStage(double sampleRate);

    /// Heads for the values, or is there at once.
    void configure(const ParameterValues& values, bool atOnce);

    /// The reduction in dB that amplitudes ask for, for `count` frames.
    void askedReduction(const float* amplitude, float* asked, std::uint32_t count);

    /// The factor on both channels: dry and compressed signal mixed, then output gain and ducking,
    /// then bypass. Reductions in dB.
    void gain(const float* reduction, const float* ducking, float* gain, std::uint32_t count);

  private:
    SmoothedValue threshold_;
    SmoothedValue slope_;
    SmoothedValue knee_;
    SmoothedValue makeup_;
    SmoothedValue mix_;
    SmoothedValue output_;
    SmoothedValue enabled_;
};

}  // namespace orvalo::effect
