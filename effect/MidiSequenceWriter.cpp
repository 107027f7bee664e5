#include "effect/MidiSequenceWriter.h"

#include <lv2/atom/util.h>

#include <cstring>

namespace orvalo::effect {

MidiSequenceWriter::MidiSequenceWriter(LV2_Atom_Sequence* sequence, const Uris& uris)
    : sequence_(uris.atomSequence == 0 ? nullptr : sequence), midiEvent_(uris.midiEvent) {
    if (sequence_ == nullptr) {
        return;
    }
    if (sequence_->atom.size >= sizeof(LV2_Atom_Sequence_Body)) {
        room_ = sequence_->atom.size - static_cast<std::uint32_t>(sizeof(LV2_Atom_Sequence_Body));
        sequence_->atom.type = uris.atomSequence;
        sequence_->body = {.unit = 0, .pad = 0};
        sequence_->atom.size = sizeof(LV2_Atom_Sequence_Body);
    }
}

bool MidiSequenceWriter::write(std::uint32_t frame, const std::array<std::uint8_t, 3>& message) {
    if (sequence_ == nullptr) {
        return true;
    }
    if (!append(frame, midiEvent_, message.data(), 3)) {
        return false;
    }
    ++written_;
    return true;
}

bool MidiSequenceWriter::append(std::uint32_t frame, LV2_URID type, const void* body,
                                std::uint32_t size) {
    // An event is its header and its body, padded to eight bytes.
    const auto needed =
        static_cast<std::uint32_t>(sizeof(LV2_Atom_Event)) + lv2_atom_pad_size(size);
    if (sequence_ == nullptr || size > longestBody || room_ < needed) {
        return false;
    }
    LV2_Atom_Event head{};
    head.time.frames = frame;
    head.body = {.size = size, .type = type};
    std::array<std::uint8_t, sizeof head + longestBody> event{};
    std::memcpy(event.data(), &head, sizeof head);
    std::memcpy(event.data() + sizeof head, body, size);
    // GCC 14 takes the body that lv2_atom_sequence_end() expects for the whole buffer.
    auto* end = reinterpret_cast<std::uint8_t*>(sequence_) + sizeof(LV2_Atom) +
                lv2_atom_pad_size(sequence_->atom.size);
    std::memcpy(end, event.data(), needed);
    sequence_->atom.size += needed;
    room_ -= needed;
    return true;
}

}  // namespace orvalo::effect
