#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace orvalo::effect {

/// The effect's parameters, in the order of their ports.
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
};

inline constexpr std::size_t parameterCount = 14;

/// A parameter's symbol, range and default, as in orvalo.ttl.
struct ParameterRange {
    const char* symbol;
    float minimum;
    float maximum;
    float standard;

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
    {"enabled", 0.0F, 1.0F, 1.0F},
    {"threshold", -60.0F, 0.0F, -18.0F},       // dB of full scale
    {"ratio", 1.0F, 20.0F, 4.0F},              // to 1
    {"knee", 0.0F, 24.0F, 6.0F},               // dB from end to end
    {"attack", 0.1F, 200.0F, 10.0F},           // ms
    {"release", 5.0F, 2000.0F, 120.0F},        // ms
    {"makeup", 0.0F, 24.0F, 4.0F},             // dB
    {"mix", 0.0F, 100.0F, 100.0F},             // per cent
    {"output", -24.0F, 12.0F, 0.0F},           // dB
    {"duck_depth", 0.0F, 60.0F, 12.0F},        // dB
    {"duck_release", 10.0F, 2000.0F, 200.0F},  // ms
    {"trigger_level", 1.0F, 30.0F, 6.0F},      // dB of gain reduction
    {"trigger_note", 0.0F, 127.0F, 36.0F},     // MIDI note number
    {"midi_channel", 0.0F, 16.0F, 0.0F},       // 0: hear all, send on 1
}};

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
        const auto i = static_cast<std::size_t>(parameter);
        values_[i] = parameterRanges[i].clamp(value);
    }

    /// The value rounded to the nearest whole number.
    std::uint8_t whole(Parameter parameter) const {
        return static_cast<std::uint8_t>(std::lround((*this)[parameter]));
    }

  private:
    std::array<float, parameterCount> values_{};
};

}  // namespace orvalo::effect
