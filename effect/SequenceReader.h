#pragma once

#include <lv2/atom/atom.h>

#include <cstdint>

#include "effect/Uris.h"

namespace orvalo::effect {

/// Reads the MIDI events and the objects of an input sequence in order, never beyond the sequence's
/// stated size.
class SequenceReader {
  public:
    /// A MIDI message, or an object such as a time position, at a frame of the block.
    struct Event {
        std::uint32_t frame;
        bool isMidi;
        /// The message, or the body of the object's atom.
        const std::uint8_t* bytes;
        std::uint32_t size;
    };

    /// A null sequence, or another atom, has no events. Frames are clamped to 0 to `frames` and to
    /// ascending order.
    SequenceReader(const LV2_Atom_Sequence* sequence, const Uris& uris, std::uint32_t frames);

    /// Reads the next event; false after the last.
    bool next(Event& event);

  private:
    LV2_URID midiEvent_;
    LV2_URID object_;
    LV2_URID blank_;
    std::uint32_t frames_;
    std::uint32_t frame_ = 0;
    const std::uint8_t* position_ = nullptr;
    std::uint32_t left_ = 0;
    bool inFrames_ = true;
};

}  // namespace orvalo::effect
