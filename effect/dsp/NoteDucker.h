#pragma once

#include <cstdint>
#include <optional>

#include "effect/dsp/HeldNotes.h"

namespace orvalo::effect {

/// Ducking by MIDI notes: while notes are held, lowers the signal by the duck depth times the
/// highest velocity / 127 within a few milliseconds. After the notes it returns exponentially with
/// the release time. A beat ducks like a note of full velocity.
class NoteDucker {
  public:
    /// Time constant of the fall: fast enough for a drum hit, slow enough not to click.
    static constexpr float attackMilliseconds = 3.0F;

    explicit NoteDucker(double sampleRate);

    /// depth: in dB at full velocity; release: in milliseconds; channel: absent for all. Releases
    /// the notes of other channels.
    void configure(float depth, float release, std::optional<std::uint8_t> channel);

    /// Releases all notes and ends the ducking at once.
    void reset();

    /// Handles one MIDI message: notes, and the channel modes that end notes. Ignores other and
    /// incomplete messages and other channels.
    void receive(const std::uint8_t* bytes, std::uint32_t size);

    /// Whether a beat ducks the next frames.
    void setBeat(bool isDown) { beat_ = isDown; }

    /// Whether the ducking of the next frames is the same until a note or a beat changes.
    bool isSteady() const { return current_ == aim(); }

    /// Writes the ducking in dB of the next `count` frames.
    void process(float* reduction, std::uint32_t count);

  private:
    double aim() const;
    void receiveControl(std::uint8_t channel, std::uint8_t controller);

    double sampleRate_;
    HeldNotes notes_;
    std::optional<std::uint8_t> channel_;
    bool beat_ = false;
    float depth_ = 0.0F;
    float releaseTime_ = 0.0F;
    double attackTake_;
    double releaseTake_ = 1.0;
    double current_ = 0.0;
};

}  // namespace orvalo::effect
