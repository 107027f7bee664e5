#pragma once

#include <cstdint>

#include "effect/dsp/MidiOutput.h"

namespace orvalo::effect {

/// Sends a note on when the gain reduction reaches the trigger level, with a velocity from the
/// depth that the reduction moves to, and a note off when it has fallen below. Every note on is
/// followed by a note off with the same number and channel, even if the settings change.
class GainReductionTrigger {
  public:
    /// The minimum length of a note, so that a synthesizer plays it.
    static constexpr double minimumHoldMilliseconds = 20.0;
    /// A note ends this far below the level, or at half the level if that is higher.
    static constexpr float hysteresisDecibels = 2.0F;

    struct Settings {
        /// Gain reduction in dB, above 0.
        float level = 6.0F;
        /// 0 to 127.
        std::uint8_t note = 36;
        /// 0 to 15.
        std::uint8_t channel = 0;
        /// False: ends a sounding note and starts none.
        bool armed = true;
    };

    explicit GainReductionTrigger(double sampleRate);

    /// Applies from the next frame on. Ends a sounding note of another number or channel.
    void configure(const Settings& settings);

    /// Ends a sounding note at the next frame.
    void reset() { mustEnd_ = sounding_; }

    /// Processes `count` frames. reduction: the smoothed reduction; held: the peak that it moves
    /// to, both in dB. firstFrame: position of the first frame in the block.
    void process(const float* reduction, const float* held, std::uint32_t count,
                 std::uint32_t firstFrame, MidiOutput& output);

    /// Velocity for a held peak: 40 at the level, plus 5 per dB above it, at most 127.
    static std::uint8_t velocity(float held, float level);

  private:
    bool start(float held, std::uint32_t frame, MidiOutput& output);
    bool end(std::uint32_t frame, MidiOutput& output);

    std::uint32_t minimumHold_;
    Settings settings_;
    float endLevel_ = 4.0F;
    std::uint32_t heldFrames_ = 0;
    std::uint8_t soundingNote_ = 0;
    std::uint8_t soundingChannel_ = 0;
    bool sounding_ = false;
    bool mustEnd_ = false;
};

}  // namespace orvalo::effect
