#include "effect/ui/model/NotePlayer.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "effect/dsp/MidiBytes.h"

namespace orvalo::effect::ui {

namespace {

constexpr double loudest = 127.0;

/// In the order of their notes, from C to C.
constexpr std::u32string_view noteKeys = U"awsedftgyhujk";
static_assert(noteKeys.size() == Scene::noteKeyCount);

std::optional<std::uint8_t> noteOf(const Keystroke& key) {
    if (key.key != Key::character) {
        return std::nullopt;
    }
    const char32_t lower = key.character >= U'A' && key.character <= U'Z'
                               ? key.character - U'A' + U'a'
                               : key.character;
    const auto at = noteKeys.find(lower);
    if (at == std::u32string_view::npos) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(NotePlayer::firstKeyNote + at);
}

}  // namespace

NotePlayer::Message NotePlayer::play(std::uint8_t note, std::uint8_t velocity) {
    const auto channel = scene_.values.whole(Parameter::midiChannel);
    const auto bits = static_cast<std::uint8_t>(channel == 0 ? 0 : channel - 1);
    host_.sendMidi({static_cast<std::uint8_t>(midi::noteOn | bits), note, velocity});
    if (note == padNote) {
        scene_.padVelocity = velocity;
    } else {
        scene_.heldNoteKeys.set(note - firstKeyNote);
    }
    scene_.markChanged(Part::pad);
    return {static_cast<std::uint8_t>(midi::noteOff | bits), note, 0};
}

void NotePlayer::release(const Message& noteOff) {
    host_.sendMidi(noteOff);
    if (noteOff[1] == padNote) {
        scene_.padVelocity = 0;
    } else {
        scene_.heldNoteKeys.reset(noteOff[1] - firstKeyNote);
    }
    scene_.markChanged(Part::pad);
}

void NotePlayer::pressPad(double height) {
    releasePad();
    pad_ = play(padNote,
                static_cast<std::uint8_t>(std::lround(std::clamp(loudest * height, 1.0, loudest))));
}

void NotePlayer::releasePad() {
    if (pad_) {
        release(*pad_);
        pad_.reset();
    }
}

bool NotePlayer::pressKey(const Keystroke& key) {
    auto note = noteOf(key);
    if (key.key == Key::character && key.character == ' ' && scene_.showsFocus &&
        scene_.focus == padFocus) {
        note = padNote;
    }
    const bool isHeld =
        std::ranges::any_of(keys_, [&](const HeldKey& held) { return held.code == key.code; });
    if (note && !isHeld) {
        keys_.push_back({key.code, play(*note, keyVelocity)});
    }
    return note.has_value();
}

bool NotePlayer::releaseKey(std::uint32_t code) {
    const auto at =
        std::ranges::find_if(keys_, [&](const HeldKey& held) { return held.code == code; });
    if (at == keys_.end()) {
        return false;
    }
    const Message noteOff = at->noteOff;
    keys_.erase(at);
    release(noteOff);
    return true;
}

void NotePlayer::releaseKeys() {
    while (!keys_.empty()) {
        releaseKey(keys_.back().code);
    }
}

}  // namespace orvalo::effect::ui
