#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "effect/ui/model/Host.h"
#include "effect/ui/model/Input.h"
#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

/// Plays notes to the effect: by the pad, and by the keys A to K with W, E, T, Y and U as the
/// black keys. A note lasts while its key or the pad is pressed.
class NotePlayer {
  public:
    /// The MIDI notes C3 and C2, where middle C is C4.
    static constexpr std::uint8_t firstKeyNote = 48;
    static constexpr std::uint8_t padNote = 36;
    static constexpr std::uint8_t keyVelocity = 100;

    NotePlayer(Scene& scene, Host& host) : scene_(scene), host_(host) {}

    /// height: of the press on the pad, 0 to 1; the higher, the louder.
    void pressPad(double height);
    void releasePad();

    /// Returns whether the key plays, also when it is pressed already. The space bar plays the pad
    /// while the pad has the visible focus.
    bool pressKey(const Keystroke& key);
    /// Ends the note of the key with this code. Returns whether there was one.
    bool releaseKey(std::uint32_t code);
    void releaseKeys();

  private:
    using Message = std::array<std::uint8_t, 3>;
    struct HeldKey {
        std::uint32_t code;
        Message noteOff;
    };

    /// Sends the note on and returns its note off.
    Message play(std::uint8_t note, std::uint8_t velocity);
    void release(const Message& noteOff);

    Scene& scene_;
    Host& host_;
    std::optional<Message> pad_;
    std::vector<HeldKey> keys_;
};

}  // namespace orvalo::effect::ui
