#pragma once

#include <lv2/atom/atom.h>

#include <array>
#include <cstdint>

#include "effect/Uris.h"
#include "effect/dsp/MidiOutput.h"

namespace orvalo::effect {

/// Writes MIDI events into the sequence of an output port. When the port is not connected or the
/// host does not map URIs, write() succeeds and writes nothing.
class MidiSequenceWriter final : public MidiOutput {
  public:
    /// Empties the sequence. Its size on entry, set by the host, is the capacity.
    MidiSequenceWriter(LV2_Atom_Sequence* sequence, const Uris& uris);

    bool write(std::uint32_t frame, const std::array<std::uint8_t, 3>& message) override;

    /// Writes any event; false when there is no room, or no port. body: at most longestBody bytes.
    bool append(std::uint32_t frame, LV2_URID type, const void* body, std::uint32_t size);
    static constexpr std::uint32_t longestBody = 256;

    /// The number of messages in the sequence.
    std::uint32_t written() const { return written_; }

  private:
    LV2_Atom_Sequence* sequence_;
    LV2_URID midiEvent_;
    std::uint32_t room_ = 0;
    std::uint32_t written_ = 0;
};

}  // namespace orvalo::effect
