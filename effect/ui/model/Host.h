#pragma once

#include <array>
#include <cstdint>

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// Receives the user's changes, on the host's UI thread.
class Host {
  public:
    Host() = default;
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// The user has changed a parameter.
    virtual void write(Parameter parameter, float value) = 0;
    /// The user has grabbed (held) or released a parameter.
    virtual void grab(Parameter parameter, bool held) = 0;
    /// The user plays a note: a message for the effect's MIDI input.
    virtual void sendMidi(const std::array<std::uint8_t, 3>& message) = 0;

  protected:
    ~Host() = default;
};

}  // namespace orvalo::effect::ui
