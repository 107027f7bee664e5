#pragma once

#include <cstdint>

namespace orvalo::effect::midi {

// Status and controller numbers of MIDI 1.0 that the effect reads or writes.
inline constexpr std::uint8_t noteOff = 0x80;
inline constexpr std::uint8_t noteOn = 0x90;
inline constexpr std::uint8_t controlChange = 0xB0;
inline constexpr std::uint8_t systemReset = 0xFF;
inline constexpr std::uint8_t allSoundOff = 120;
/// From here to 127 the channel modes, each of which ends all notes of its channel.
inline constexpr std::uint8_t allNotesOff = 123;

}  // namespace orvalo::effect::midi
