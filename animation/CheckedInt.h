#pragma once

#include <cstdint>

namespace orvalo {

/// Ends the program with the message why the number has no whole one of 64 bits: it is infinite or
/// no number, too low, or too high.
[[noreturn]] void failToConvert(float value);

/// The number cut to a whole one towards zero; failToConvert() where there is none.
inline std::int64_t checkedInt(float value) {
    constexpr float belowInts = -9223373136366403584.0f;  // The next float below -2^63.
    constexpr float aboveInts = 9223372036854775808.0f;   // 2^63.
    if (!(belowInts < value && value < aboveInts)) {
        failToConvert(value);
    }
    return static_cast<std::int64_t>(value);
}

}  // namespace orvalo
