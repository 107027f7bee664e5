#pragma once

#include <cstdint>
#include <optional>

#include "effect/dsp/HeldNotes.h"

namespace orvalo::effect {

/// Ducks by MIDI notes: while notes are down the signal goes down by the duck depth times the
/// loudest velocity over 127, within a few milliseconds; when they go up it comes back
/// exponentially with the release time.
class NoteDucker {
  public:
    /// Time constant of going down: fast enough to clear the way for a drum, slow enough not to
    /// click.
    static constexpr float attackMilliseconds = 3.0F;

    explicit NoteDucker(double sampleRate);

    /// Depth in dB at full velocity, release in milliseconds, channel to hear (absent: all).
    /// Notes of channels that are no longer heard are let go.
    void configure(float depth, float release, std::optional<std::uint8_t> channel);

    /// Lets go of all notes and is at rest at once.
    void reset();

    /// Takes one MIDI message: notes, and the channel modes that end notes. Others, incomplete
    /// messages and those of other channels change nothing.
    void receive(const std::uint8_t* bytes, std::uint32_t size);

    /// The reduction in dB of the next `count` frames.
    void process(float* reduction, std::uint32_t count);

    /// Reduction at the last frame, in dB.
    float reduction() const { return static_cast<float>(current_); }

  private:
    void receiveControl(std::uint8_t channel, std::uint8_t controller);

    double sampleRate_;
    HeldNotes notes_;
    std::optional<std::uint8_t> channel_;
    float depth_ = 0.0F;
    float releaseTime_ = 0.0F;
    double attackTake_;
    double releaseTake_ = 1.0;
    double current_ = 0.0;
};

}  // namespace orvalo::effect
