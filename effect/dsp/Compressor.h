#pragma once

#include <array>
#include <cstdint>

#include "effect/dsp/Ballistics.h"
#include "effect/dsp/Chunk.h"
#include "effect/dsp/GainStage.h"
#include "effect/dsp/LevelDetector.h"
#include "effect/dsp/Parameter.h"

namespace orvalo::effect {

/// From the key to the gains of two channels: level, curve, ballistics, gain.
class Compressor {
  public:
    /// The result for the frames of a chunk.
    struct Gains {
        /// The gain factors of the first channel, and of the second one if they differ.
        Chunk first;
        Chunk second;
        bool areSame = true;
        const Chunk& ofSecond() const { return areSame ? first : second; }
        /// The deeper reduction of both channels in dB, and the held peak that it moves to.
        Chunk reduction;
        Chunk held;
    };

    explicit Compressor(double sampleRate,
                        LevelDetector::Crests crests = LevelDetector::Crests::ofFrames);

    /// Ramps to the values within 20 ms, or sets them at once. Times apply at once in any case.
    void configure(const ParameterValues& values, bool atOnce);
    void reset();
    /// Takes the reduction of another one, which may run at another rate.
    void continueFrom(const Compressor& other);

    /// first, second: the key of the two channels. ducking: of the same frames. count: at most
    /// chunkFrames.
    void process(const float* first, const float* second, const Ducking& ducking, Gains& gains,
                 std::uint32_t count);

  private:
    /// Whether both channels get one gain.
    bool isLinked() const;
    void processLinked(const float* first, const float* second, const Ducking& ducking,
                       Gains& gains, std::uint32_t count);
    void processSeparately(const float* first, const float* second, const Ducking& ducking,
                           Gains& gains, std::uint32_t count);

    double sampleRate_;
    LevelDetector detector_;
    GainStage gainStage_;
    // The first one alone while the channels are linked.
    std::array<Ballistics, 2> ballistics_;
    bool wasLinked_ = true;
};

}  // namespace orvalo::effect
