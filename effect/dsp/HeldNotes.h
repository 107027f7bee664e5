#pragma once

#include <array>
#include <cstdint>

namespace orvalo::effect {

/// The held notes of 16 channels and their velocities. Channels are 0 to 15, notes 0 to 127.
class HeldNotes {
  public:
    /// velocity: 1 to 127; replaces the velocity of a note that is already held.
    void press(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity);
    void release(std::uint8_t channel, std::uint8_t note);
    void releaseChannel(std::uint8_t channel);
    void releaseAllBut(std::uint8_t channel);
    void releaseAll();

    /// The highest velocity of the held notes; 0 without held notes.
    std::uint8_t loudest() const { return loudest_; }

  private:
    void findLoudest();

    std::array<std::array<std::uint8_t, 128>, 16> velocities_{};
    std::uint8_t loudest_ = 0;
};

}  // namespace orvalo::effect
