#include "effect/dsp/TruePeak.h"

#include <algorithm>
#include <cmath>

namespace orvalo::effect {

namespace {

/// The coefficients of Annex 2, newest sample first. The other two phases are these two reversed.
constexpr std::array<std::array<float, TruePeak::taps>, 2> halves{{
    {0.0017089843750F, 0.0109863281250F, -0.0196533203125F, 0.0332031250000F, -0.0594482421875F,
     0.1373291015625F, 0.9721679687500F, -0.1022949218750F, 0.0476074218750F, -0.0266113281250F,
     0.0148925781250F, -0.0083007812500F},
    {-0.0291748046875F, 0.0292968750000F, -0.0517578125000F, 0.0891113281250F, -0.1665039062500F,
     0.4650878906250F, 0.7797851562500F, -0.2003173828125F, 0.1015625000000F, -0.0582275390625F,
     0.0330810546875F, -0.0189208984375F},
}};

constexpr float coefficient(std::uint32_t phase, std::uint32_t tap) {
    return phase < halves.size() ? halves[phase][tap]
                                 : halves[TruePeak::phases - 1 - phase][TruePeak::taps - 1 - tap];
}

/// No interpolated value exceeds the highest sample by more: the sum of a phase's coefficients.
constexpr float largestGain = 2.03F;

float highestSample(const float* samples, std::size_t count) {
    float result = 0.0F;
    for (std::size_t i = 0; i < count; ++i) {
        result = std::max(result, std::abs(samples[i]));
    }
    return result;
}

}  // namespace

float TruePeak::highest(const float* samples, std::uint32_t count, float start) {
    const float last = highestSample(samples_.data(), taps - 1);
    if (largestGain * std::max(last, highestSample(samples, count)) <= start) {
        std::copy_n(samples, count, samples_.begin() + taps - 1);
        std::copy_n(samples_.begin() + count, taps - 1, samples_.begin());
        return start;
    }
    Chunk peaks{};
    raise(samples, peaks.data(), count);
    return std::max(start, highestSample(peaks.data(), count));
}

void TruePeak::raise(const float* samples, float* peaks, std::uint32_t count) {
    std::copy_n(samples, count, samples_.begin() + taps - 1);
    for (std::uint32_t phase = 0; phase < phases; ++phase) {
        // Frame by frame within each tap, so that the loops become vector code.
        Chunk sum{};
        for (std::uint32_t tap = 0; tap < taps; ++tap) {
            const float factor = coefficient(phase, tap);
            const float* from = samples_.data() + taps - 1 - tap;
            for (std::uint32_t i = 0; i < count; ++i) {
                sum[i] += factor * from[i];
            }
        }
        for (std::uint32_t i = 0; i < count; ++i) {
            peaks[i] = std::max(peaks[i], std::abs(sum[i]));
        }
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        peaks[i] = std::max(peaks[i], std::abs(samples[i]));
    }
    std::copy_n(samples_.begin() + count, taps - 1, samples_.begin());
}

}  // namespace orvalo::effect
