#pragma once

#include <cstdint>

namespace orvalo {

// Named MIDI byte values: the status bytes of MIDI 1.0 (of channel 0 for the channel messages), its
// controller numbers, and the meta event types of the Standard MIDI File. Values that differ from
// these standards have a comment.

inline const std::uint8_t STATUS_NOTEOFF = 0x80;
inline const std::uint8_t STATUS_NOTEON = 0x90;
inline const std::uint8_t STATUS_CONTROLLER = 0xB0;
inline const std::uint8_t STATUS_PPRESSURE = 0xA0;
inline const std::uint8_t STATUS_CPRESSURE = 0xD0;
inline const std::uint8_t STATUS_PROGRAM = 0xC0;
inline const std::uint8_t STATUS_PITCHBEND = 0xE0;
inline const std::uint8_t STATUS_SYSEX = 0xF0;
inline const std::uint8_t STATUS_TIMECODE = 0xF1;
inline const std::uint8_t STATUS_SONGPOSITION = 0xF2;
inline const std::uint8_t STATUS_SONGSELECT = 0xF3;
inline const std::uint8_t STATUS_RESERVED1 = 0xF4;
inline const std::uint8_t STATUS_RESERVED2 = 0xF5;
inline const std::uint8_t STATUS_TUNEREQUEST = 0xF6;
inline const std::uint8_t STATUS_EOX = 0xF7;
inline const std::uint8_t STATUS_TIMINGCLOCK = 0xF8;
inline const std::uint8_t STATUS_RESERVED3 = 0xF9;
inline const std::uint8_t STATUS_START = 0xFA;
inline const std::uint8_t STATUS_CONTINUE = 0xFB;
inline const std::uint8_t STATUS_STOP = 0xFC;
inline const std::uint8_t STATUS_RESERVED4 = 0xFD;
inline const std::uint8_t STATUS_ACTIVESENSING = 0xFE;
inline const std::uint8_t STATUS_RESET = 0xFF;
/// A reserved status byte; 0xFF in Standard MIDI Files.
inline const std::uint8_t STATUS_META = STATUS_RESERVED4;

inline const std::uint8_t CONTROLLER_BANKSELECT_MSB = 0;
inline const std::uint8_t CONTROLLER_MODWHEEL = 1;
inline const std::uint8_t CONTROLLER_003 = 3;
inline const std::uint8_t CONTROLLER_DATA_MSB = 6;
inline const std::uint8_t CONTROLLER_VOLUME = 7;
inline const std::uint8_t CONTROLLER_008 = 8;
inline const std::uint8_t CONTROLLER_009 = 9;
inline const std::uint8_t CONTROLLER_PAN = 10;
inline const std::uint8_t CONTROLLER_EXPRESSION = 11;
inline const std::uint8_t CONTROLLER_016 = 16;
inline const std::uint8_t CONTROLLER_017 = 17;
inline const std::uint8_t CONTROLLER_018 = 18;
inline const std::uint8_t CONTROLLER_019 = 19;
inline const std::uint8_t CONTROLLER_020 = 20;
inline const std::uint8_t CONTROLLER_021 = 21;
inline const std::uint8_t CONTROLLER_022 = 22;
inline const std::uint8_t CONTROLLER_023 = 23;
inline const std::uint8_t CONTROLLER_024 = 24;
inline const std::uint8_t CONTROLLER_025 = 25;
inline const std::uint8_t CONTROLLER_026 = 26;
inline const std::uint8_t CONTROLLER_027 = 27;
inline const std::uint8_t CONTROLLER_028 = 28;
inline const std::uint8_t CONTROLLER_029 = 29;
inline const std::uint8_t CONTROLLER_030 = 30;
inline const std::uint8_t CONTROLLER_031 = 31;
inline const std::uint8_t CONTROLLER_BANKSELECT_LSB = 32;
inline const std::uint8_t CONTROLLER_SUSTAIN = 64;
inline const std::uint8_t CONTROLLER_PORTA = 65;
inline const std::uint8_t CONTROLLER_HOLD2 = 69;
inline const std::uint8_t CONTROLLER_RESONANCE = 71;
inline const std::uint8_t CONTROLLER_RELEASE = 72;
inline const std::uint8_t CONTROLLER_ATTACK = 73;
inline const std::uint8_t CONTROLLER_CUTOFF = 74;
inline const std::uint8_t CONTROLLER_DECAY = 75;
inline const std::uint8_t CONTROLLER_SUSTAIN2 = 76;
inline const std::uint8_t CONTROLLER_102 = 102;
inline const std::uint8_t CONTROLLER_103 = 103;
inline const std::uint8_t CONTROLLER_104 = 104;
inline const std::uint8_t CONTROLLER_105 = 105;
inline const std::uint8_t CONTROLLER_106 = 106;
inline const std::uint8_t CONTROLLER_107 = 107;
inline const std::uint8_t CONTROLLER_108 = 108;
inline const std::uint8_t CONTROLLER_109 = 109;
inline const std::uint8_t CONTROLLER_110 = 110;
inline const std::uint8_t CONTROLLER_111 = 111;
inline const std::uint8_t CONTROLLER_112 = 112;
inline const std::uint8_t CONTROLLER_RESET_CONTROLLERS = 121;
inline const std::uint8_t CONTROLLER_NOTES_OFF = 123;
/// All notes off; 120 in MIDI 1.0.
inline const std::uint8_t CONTROLLER_SOUNDS_OFF = 123;

inline const std::uint8_t META_SEQUENCENUMBER = 0x00;
inline const std::uint8_t META_TEXT = 0x01;
inline const std::uint8_t META_COPYRIGHT = 0x02;
inline const std::uint8_t META_TRACKNAME = 0x03;
inline const std::uint8_t META_INSTRUMENTNAME = 0x04;
inline const std::uint8_t META_LYRICS = 0x05;
inline const std::uint8_t META_MARKER = 0x06;
inline const std::uint8_t META_CUEPOINT = 0x07;
inline const std::uint8_t META_PROGRAMNAME = 0x08;
inline const std::uint8_t META_DEVICENAME = 0x09;
inline const std::uint8_t META_CHANNELPREFIX = 0x20;
inline const std::uint8_t META_MIDIPORT = 0x21;
inline const std::uint8_t META_EOT = 0x2F;
inline const std::uint8_t META_SETTEMPO = 0x51;
inline const std::uint8_t META_SMTPOFFSET = 0x54;
inline const std::uint8_t META_TIMESIGNATURE = 0x58;
inline const std::uint8_t META_KEYSIGNATURE = 0x59;
inline const std::uint8_t META_SPECIFIC = 0x7F;
inline const std::uint8_t META_SYSEX = 0xF0;
// Events without a type in Standard MIDI Files.
inline const std::uint8_t META_UNKNOWN = 0xFF;
inline const std::uint8_t META_EXTENDEDNOTE = 0xFF;
inline const std::uint8_t META_AUPARAMETER = 0xFF;
inline const std::uint8_t META_AUPRESET = 0xFF;

}  // namespace orvalo
