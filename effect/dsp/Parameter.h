#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace orvalo::effect {

/// The effect's parameters, in the order of their ports. New ones come last.
enum class Parameter : std::uint8_t {
    enabled,
    threshold,
    ratio,
    knee,
    attack,
    release,
    makeup,
    mix,
    output,
    duckDepth,
    duckRelease,
    triggerLevel,
    triggerNote,
    midiChannel,
    beat,
    beatDivision,
    beatOffset,
    beatLength,
    beatTempo,
    sideChainSource,
    sideChainHighPass,
    sideChainLowPass,
    sideChainListen,
    rms,
    rmsWindow,
    hold,
    autoMakeup,
    range,
    lookAhead,
    ceilingOn,
    ceiling,
    midSide,
    link,
    midAmount,
    sideAmount,
    adaptive,
    oversampling,
};

inline constexpr std::size_t parameterCount = 37;

/// A parameter's symbol, range, default and port, as in orvalo.ttl.
struct ParameterRange {
    const char* symbol;
    float minimum;
    float maximum;
    float standard;
    std::uint32_t port;

    /// The nearest value within the range; the default for NaN.
    constexpr float clamp(float value) const {
        if (!(value == value)) {
            return standard;
        }
        if (value < minimum) {
            return minimum;
        }
        return value > maximum ? maximum : value;
    }
};

inline constexpr std::array<ParameterRange, parameterCount> parameterRanges{{
    {"enabled", 0.0F, 1.0F, 1.0F, 6},
    {"threshold", -60.0F, 0.0F, -18.0F, 7},        // dB of full scale
    {"ratio", 1.0F, 20.0F, 4.0F, 8},               // to 1
    {"knee", 0.0F, 24.0F, 6.0F, 9},                // dB from end to end
    {"attack", 0.1F, 200.0F, 10.0F, 10},           // ms
    {"release", 5.0F, 2000.0F, 120.0F, 11},        // ms
    {"makeup", 0.0F, 24.0F, 4.0F, 12},             // dB
    {"mix", 0.0F, 100.0F, 100.0F, 13},             // per cent
    {"output", -24.0F, 12.0F, 0.0F, 14},           // dB
    {"duck_depth", 0.0F, 60.0F, 12.0F, 15},        // dB
    {"duck_release", 10.0F, 2000.0F, 200.0F, 16},  // ms
    {"trigger_level", 1.0F, 30.0F, 6.0F, 17},      // dB of gain reduction
    {"trigger_note", 0.0F, 127.0F, 36.0F, 18},     // MIDI note number
    {"midi_channel", 0.0F, 16.0F, 0.0F, 19},       // 0: hear all, send on 1
    {"beat", 0.0F, 1.0F, 0.0F, 26},
    {"beat_division", 0.0F, 14.0F, 7.0F, 27},       // see BeatGenerator::Settings
    {"beat_offset", -50.0F, 50.0F, 0.0F, 28},       // per cent of a step
    {"beat_length", 5.0F, 95.0F, 25.0F, 29},        // per cent of a step
    {"beat_tempo", 30.0F, 300.0F, 120.0F, 30},      // quarter notes per minute
    {"sc_source", 0.0F, 1.0F, 0.0F, 33},            // 1: external
    {"sc_highpass", 20.0F, 20000.0F, 20.0F, 34},    // Hz; the minimum is off
    {"sc_lowpass", 20.0F, 20000.0F, 20000.0F, 35},  // Hz; the maximum is off
    {"sc_listen", 0.0F, 1.0F, 0.0F, 36},
    {"detector", 0.0F, 1.0F, 0.0F, 37},       // 1: RMS
    {"rms_window", 1.0F, 100.0F, 10.0F, 38},  // ms
    {"hold", 0.0F, 500.0F, 0.0F, 39},         // ms
    {"auto_makeup", 0.0F, 1.0F, 0.0F, 40},
    {"range", 0.0F, 60.0F, 60.0F, 41},      // dB; the maximum is no limit
    {"look_ahead", 0.0F, 10.0F, 0.0F, 43},  // ms
    {"ceiling_on", 0.0F, 1.0F, 0.0F, 44},
    {"ceiling", -24.0F, 0.0F, -1.0F, 45},       // dB of full scale, true peak
    {"stereo_mode", 0.0F, 1.0F, 0.0F, 46},      // 1: mid and side
    {"link", 0.0F, 100.0F, 100.0F, 47},         // per cent
    {"mid_amount", 0.0F, 100.0F, 100.0F, 48},   // per cent
    {"side_amount", 0.0F, 100.0F, 100.0F, 49},  // per cent
    {"adaptive", 0.0F, 1.0F, 0.0F, 50},
    {"oversampling", 0.0F, 2.0F, 0.0F, 51},  // 0: none, 1: twofold, 2: fourfold
}};

constexpr const ParameterRange& range(Parameter parameter) {
    return parameterRanges[static_cast<std::size_t>(parameter)];
}

/// One value per parameter, always within its range.
class ParameterValues {
  public:
    ParameterValues() {
        for (std::size_t i = 0; i < parameterCount; ++i) {
            values_.at(i) = parameterRanges.at(i).standard;
        }
    }

    float operator[](Parameter parameter) const {
        return values_[static_cast<std::size_t>(parameter)];
    }

    void set(Parameter parameter, float value) {
        values_[static_cast<std::size_t>(parameter)] = range(parameter).clamp(value);
    }

    bool operator==(const ParameterValues&) const = default;

    /// Whether a switch is on.
    bool isOn(Parameter parameter) const { return (*this)[parameter] > 0.0F; }

    /// The value rounded to the nearest whole number.
    std::uint8_t whole(Parameter parameter) const {
        return static_cast<std::uint8_t>(std::lround((*this)[parameter]));
    }

  private:
    std::array<float, parameterCount> values_{};
};

}  // namespace orvalo::effect
