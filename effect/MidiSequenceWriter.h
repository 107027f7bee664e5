#pragma once

#include <lv2/atom/atom.h>

#include <array>
#include <cstdint>

#include "effect/Uris.h"
#include "effect/dsp/MidiOutput.h"

namespace orvalo::effect {

/// Writes MIDI events into the sequence of an output port. Nobody hears them where the port is not
/// connected or the host maps no URIs: then writing succeeds and nothing is written.
class MidiSequenceWriter final : public MidiOutput {
  public:
    /// Takes the sequence's stated size as its room, as a host leaves it there, and empties it.
    MidiSequenceWriter(LV2_Atom_Sequence* sequence, const Uris& uris);

    bool write(std::uint32_t frame, const std::array<std::uint8_t, 3>& message) override;

    /// How many messages are in the sequence.
    std::uint32_t written() const { return written_; }

  private:
    LV2_Atom_Sequence* sequence_;
    LV2_URID midiEvent_;
    std::uint32_t room_ = 0;
    std::uint32_t written_ = 0;
};

}  // namespace orvalo::effect
