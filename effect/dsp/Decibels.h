#pragma once

#include <bit>
#include <cstdint>

namespace orvalo::effect {

/// Levels below this, in dB of full scale, count as silence.
inline constexpr float silenceDecibels = -160.0F;

/// Base-2 logarithm of a positive, normal number, within 1e-6 absolute between 2^-60 and 2^60.
/// Branch-free, so that loops over it become vector code; the series is that of the inverse
/// hyperbolic tangent around 1.
inline float fastLog2(float x) {
    // The offset makes the mantissa run from sqrt(1/2) to sqrt(2), where the series is shortest.
    const auto bits = std::bit_cast<std::int32_t>(x) - 0x3F3504F3;
    const auto exponent = bits >> 23;
    const auto mantissa = std::bit_cast<float>((bits & 0x007FFFFF) + 0x3F3504F3);
    const float s = (mantissa - 1.0F) / (mantissa + 1.0F);
    const float s2 = s * s;
    const float series =
        2.885390082F + s2 * (0.961796694F + s2 * (0.577078016F + s2 * 0.412198583F));
    return static_cast<float>(exponent) + s * series;
}

/// 2 to the power of x for x between -100 and 100, within 1e-6 relative. Branch-free.
inline float fastExp2(float x) {
    // Adding 1.5 * 2^23 rounds to the nearest whole number in the low bits of the mantissa.
    constexpr float roundingOffset = 12582912.0F;
    const float shifted = x + roundingOffset;
    const float f = x - (shifted - roundingOffset);
    const auto whole =
        std::bit_cast<std::int32_t>(shifted) - std::bit_cast<std::int32_t>(roundingOffset);
    const auto scale = std::bit_cast<float>((whole + 127) << 23);
    const float power =
        1.0F + f * (0.693147181F +
                    f * (0.240226507F +
                         f * (0.0555041087F +
                              f * (0.00961812911F + f * (0.00133335581F + f * 0.000154035304F)))));
    return scale * power;
}

/// Level of an amplitude in dB; silenceDecibels at 1e-8 and below.
inline float decibelsFromAmplitude(float amplitude) {
    return 6.02059991F * fastLog2(amplitude > 1e-8F ? amplitude : 1e-8F);
}

/// Amplitude factor of a gain in dB, for gains between -600 and 600 dB.
inline float amplitudeFromDecibels(float decibels) {
    return fastExp2(0.166096405F * decibels);
}

}  // namespace orvalo::effect
