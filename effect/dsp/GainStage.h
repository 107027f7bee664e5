#pragma once

#include <cstdint>

#include "effect/dsp/Chunk.h"
#include "effect/dsp/Parameter.h"
#include "effect/dsp/SmoothedValue.h"

namespace orvalo::effect {

/// The smoothed parameters of the gain, and the two loops that use them: from level to static
/// reduction, and from smoothed reduction to the gain of the signal.
class GainStage {
  public:
    explicit GainStage(double sampleRate);

    /// Ramps to the values, or sets them at once.
    void configure(const ParameterValues& values, bool atOnce);

    /// Writes the static reduction in dB for `count` amplitudes.
    void askedReduction(const float* amplitude, float* asked, std::uint32_t count);

    /// Writes the gain factor for both channels: mix of dry and compressed signal, output gain,
    /// ducking, bypass. reduction, ducking: in dB.
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
