#pragma once

#include <array>
#include <cstdint>

namespace orvalo::effect {

/// The notes that are down on 16 channels, with their velocities. Channels count from 0.
class HeldNotes {
  public:
    /// Velocity 1 to 127; the same note again takes the new velocity.
    void press(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity);
    void release(std::uint8_t channel, std::uint8_t note);
    void releaseChannel(std::uint8_t channel);
    void releaseAllBut(std::uint8_t channel);
    void releaseAll();

    /// The highest velocity of the notes that are down, 0 without any.
    std::uint8_t loudest() const { return loudest_; }

  private:
    void findLoudest();

    std::array<std::array<std::uint8_t, 128>, 16> velocities_{};
    std::uint8_t loudest_ = 0;
};

}  // namespace orvalo::effect
