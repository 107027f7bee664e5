#include "effect/SequenceReader.h"

#include <lv2/atom/util.h>

#include <algorithm>
#include <cstring>

namespace orvalo::effect {

SequenceReader::SequenceReader(const LV2_Atom_Sequence* sequence, const Uris& uris,
                               std::uint32_t frames)
    : midiEvent_(uris.midiEvent),
      object_(uris.atomObject),
      blank_(uris.atomBlank),
      frames_(frames) {
    if (sequence == nullptr || uris.atomSequence == 0 || sequence->atom.type != uris.atomSequence ||
        sequence->atom.size < sizeof(LV2_Atom_Sequence_Body)) {
        return;
    }
    // Unit 0 means frames. With any other unit all events count as at frame 0.
    inFrames_ = sequence->body.unit == 0;
    position_ = reinterpret_cast<const std::uint8_t*>(&sequence->body + 1);
    left_ = sequence->atom.size - static_cast<std::uint32_t>(sizeof(LV2_Atom_Sequence_Body));
}

bool SequenceReader::next(Event& event) {
    while (left_ >= sizeof(LV2_Atom_Event)) {
        LV2_Atom_Event head;
        std::memcpy(&head, position_, sizeof head);
        const auto room = left_ - static_cast<std::uint32_t>(sizeof head);
        if (head.body.size > room) {
            break;
        }
        const std::uint8_t* bytes = position_ + sizeof head;
        const std::uint32_t padded = std::min(room, lv2_atom_pad_size(head.body.size));
        position_ = bytes + padded;
        left_ = room - padded;
        const bool isMidi = head.body.type == midiEvent_ && head.body.size != 0;
        const bool isObject = head.body.type == object_ || head.body.type == blank_;
        if (isMidi || isObject) {
            const std::int64_t time = inFrames_ ? head.time.frames : 0;
            frame_ = static_cast<std::uint32_t>(
                std::clamp<std::int64_t>(time, frame_, std::max(frame_, frames_)));
            event = {.frame = frame_, .isMidi = isMidi, .bytes = bytes, .size = head.body.size};
            return true;
        }
    }
    left_ = 0;
    return false;
}

}  // namespace orvalo::effect
