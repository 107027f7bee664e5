#pragma once

#include <array>
#include <cstdint>

namespace orvalo::effect {

/// Receives the MIDI messages of a block.
class MidiOutput {
  public:
    MidiOutput() = default;
    MidiOutput(const MidiOutput&) = delete;
    MidiOutput& operator=(const MidiOutput&) = delete;

    /// Writes a message at a frame of the block, in ascending order of frames. Returns false, and
    /// writes nothing, when there is no room.
    virtual bool write(std::uint32_t frame, const std::array<std::uint8_t, 3>& message) = 0;

  protected:
    ~MidiOutput() = default;
};

}  // namespace orvalo::effect
