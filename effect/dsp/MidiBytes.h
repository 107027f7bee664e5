#pragma once

#include <cstdint>

namespace orvalo::effect::midi {

// The MIDI 1.0 status bytes and controller numbers that the effect uses.
inline constexpr std::uint8_t noteOff = 0x80;
inline constexpr std::uint8_t noteOn = 0x90;
inline constexpr std::uint8_t controlChange = 0xB0;
inline constexpr std::uint8_t systemReset = 0xFF;
inline constexpr std::uint8_t allSoundOff = 120;
/// The controllers from here to 127 are channel modes; each ends all notes of its channel.
inline constexpr std::uint8_t allNotesOff = 123;

}  // namespace orvalo::effect::midi
