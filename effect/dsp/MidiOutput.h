#pragma once

#include <array>
#include <cstdint>

namespace orvalo::effect {

/// Where the MIDI messages of a block go.
class MidiOutput {
  public:
    MidiOutput() = default;
    MidiOutput(const MidiOutput&) = delete;
    MidiOutput& operator=(const MidiOutput&) = delete;

    /// Writes a message at a frame of the block; frames never go back. False when there is no room:
    /// then nothing was written.
    virtual bool write(std::uint32_t frame, const std::array<std::uint8_t, 3>& message) = 0;

  protected:
    ~MidiOutput() = default;
};

}  // namespace orvalo::effect
