#pragma once

#include <array>
#include <cstdint>

namespace orvalo::effect {

/// The effect's output values, in the order of their ports.
enum class Reading : std::uint8_t {
    reduction,
    ducking,
    inputLevel,
    outputLevel,
    midiInCount,
    midiOutCount,
    truePeak,
    runCount,
};

/// A reading's symbol and port, as in orvalo.ttl.
struct ReadingPort {
    const char* symbol;
    std::uint32_t port;
};

inline constexpr std::array<ReadingPort, 8> readingPorts{{
    {"gain_reduction", 20},  // dB
    {"ducking", 21},         // dB
    {"input_level", 22},     // dB of full scale
    {"output_level", 23},    // dB of full scale
    {"midi_in_count", 24},   // messages, modulo 65536
    {"midi_out_count", 25},  // messages, modulo 65536
    {"true_peak", 31},       // dB of full scale
    {"run_count", 32},       // calls of run(), modulo 65536
}};

}  // namespace orvalo::effect
