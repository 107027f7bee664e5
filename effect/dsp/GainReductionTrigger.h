#pragma once

#include <cstdint>

#include "effect/dsp/MidiOutput.h"

namespace orvalo::effect {

/// Plays a note by the gain reduction: on when it reaches the level, with a velocity from how deep
/// it is about to go, and off when it has fallen back clearly below. Every note on is followed by
/// its own note off: same number, same channel, whatever the settings have become.
class GainReductionTrigger {
  public:
    /// A note sounds at least this long, so that a synthesizer hears it.
    static constexpr double minimumHoldMilliseconds = 20.0;
    /// It ends this far below the level, or at half the level where that is nearer.
    static constexpr float hysteresisDecibels = 2.0F;

    struct Settings {
        /// Gain reduction in dB, above 0.
        float level = 6.0F;
        /// 0 to 127.
        std::uint8_t note = 36;
        /// 0 to 15.
        std::uint8_t channel = 0;
        /// Disarmed it ends its note and starts none.
        bool armed = true;
    };

    explicit GainReductionTrigger(double sampleRate);

    /// Holds from the next frame on. A sounding note that the settings no longer name ends there.
    void configure(const Settings& settings);

    /// Forgets what it has heard; a sounding note ends at the next frame.
    void reset() { mustEnd_ = sounding_; }

    /// Looks at `count` frames of gain reduction in force and of the held peak that it moves to,
    /// both in dB. `firstFrame` is the first one's place in the block.
    void process(const float* reduction, const float* held, std::uint32_t count,
                 std::uint32_t firstFrame, MidiOutput& output);

    /// Velocity of a note for a held peak: 40 at the level, 5 more for each dB beyond, at most 127.
    static std::uint8_t velocity(float held, float level);

    bool isSounding() const { return sounding_; }

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
