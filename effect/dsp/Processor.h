#pragma once

#include <cstdint>
#include <optional>

#include "effect/dsp/Ballistics.h"
#include "effect/dsp/BeatGenerator.h"
#include "effect/dsp/GainReductionTrigger.h"
#include "effect/dsp/GainStage.h"
#include "effect/dsp/LevelMeter.h"
#include "effect/dsp/MidiOutput.h"
#include "effect/dsp/NoteDucker.h"
#include "effect/dsp/Parameter.h"

namespace orvalo::effect {

/// The whole effect on blocks of stereo samples, without latency: one gain for both channels,
/// computed from the louder one. Neither allocates nor locks after construction. The result does
/// not depend on how the frames are divided into blocks.
class Processor {
  public:
    /// The meters of a block, in dB.
    struct Meters {
        /// Deepest gain reduction of the compressor.
        float gainReduction = 0.0F;
        /// Deepest ducking by notes and beats.
        float ducking = 0.0F;
        float inputLevel = LevelMeter::lowest;
        float outputLevel = LevelMeter::lowest;
    };

    /// sampleRate: frames per second, above 0.
    explicit Processor(double sampleRate);

    /// Resets the state. A sounding note ends at the next frame that is processed.
    void reset();

    /// Begins a block with new parameter values. They apply at once after a reset, otherwise
    /// smoothly.
    void beginBlock(const ParameterValues& values);

    /// Handles one MIDI message before the next frame.
    void receive(const std::uint8_t* bytes, std::uint32_t size) { ducker_.receive(bytes, size); }

    /// The host's musical time at the next frame; see BeatGenerator.
    void setHostTime(std::optional<double> quarters, double quartersPerSecond) {
        beat_.setHostTime(quarters, quartersPerSecond);
    }

    /// Processes frames [first, end) of the block's four buffers. Any output may be any input.
    /// Samples that are not finite, or above +300 dB, count as 0.
    void process(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
                 std::uint32_t first, std::uint32_t end, MidiOutput& midi);

    /// Ends the block, which had `frames` frames, and returns its meters.
    Meters endBlock(std::uint32_t frames);

  private:
    void processChunk(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
                      std::uint32_t first, std::uint32_t count, MidiOutput& midi);

    GainStage gainStage_;
    Ballistics ballistics_;
    BeatGenerator beat_;
    NoteDucker ducker_;
    GainReductionTrigger trigger_;
    LevelMeter inputMeter_;
    LevelMeter outputMeter_;
    float inputPeak_ = 0.0F;
    float outputPeak_ = 0.0F;
    float deepestReduction_ = 0.0F;
    float deepestDucking_ = 0.0F;
    bool fresh_ = true;
};

}  // namespace orvalo::effect
