#pragma once

#include <cstdint>

#include "effect/dsp/Chunk.h"
#include "effect/dsp/Parameter.h"
#include "effect/dsp/SmoothedValue.h"

namespace orvalo::effect {

/// The ducking of some frames in dB.
struct Ducking {
    Chunk decibels;
    /// All frames have the same.
    bool isSteady = false;
};

/// The smoothed parameters of the gain, and the loops that use them: from level to static
/// reduction, and from smoothed reduction to the gain of the signal. Each of the two steps is
/// called once per span of frames, for one channel that stands for both or for both channels.
class GainStage {
  public:
    explicit GainStage(double sampleRate);

    /// Ramps to the values, or sets them at once.
    void configure(const ParameterValues& values, bool atOnce);

    /// Whether both channels have the same static reduction and the same gain for it.
    bool isLinked() const;

    /// Writes the static reduction in dB for `count` amplitudes.
    void askedReduction(const float* amplitude, float* asked, std::uint32_t count);
    /// The same for two channels, whose reductions are linked as far as the Link control says.
    void askedReductions(const Chunk& first, const Chunk& second, Chunk& firstAsked,
                         Chunk& secondAsked, std::uint32_t count);

    /// Writes the gain factor: mix of dry and compressed signal, output gain, ducking. reduction:
    /// in dB.
    void gain(const float* reduction, const Ducking& ducking, float* gain, std::uint32_t count);
    /// The same for two channels. Scales their reductions by the amounts for mid and side first.
    void gains(Chunk& first, Chunk& second, const Ducking& ducking, Chunk& firstGain,
               Chunk& secondGain, std::uint32_t count);

  private:
    /// The values of some frames: Chunks while one of them moves, else single values.
    template <typename Values>
    struct Curve;
    template <typename Values>
    struct Levels;
    void fill(Curve<Chunk>& curve, std::uint32_t count);
    void fill(Levels<Chunk>& levels, std::uint32_t count);
    bool isCurveMoving() const;
    bool areLevelsMoving() const;

    SmoothedValue threshold_;
    SmoothedValue slope_;
    SmoothedValue knee_;
    SmoothedValue range_;
    SmoothedValue makeup_;
    SmoothedValue mix_;
    SmoothedValue output_;
    SmoothedValue link_;
    SmoothedValue midAmount_;
    SmoothedValue sideAmount_;
    bool isMidSide_ = false;
};

}  // namespace orvalo::effect
