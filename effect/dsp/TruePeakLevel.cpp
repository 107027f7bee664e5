#include "effect/dsp/TruePeakLevel.h"

#include <algorithm>
#include <cmath>

namespace orvalo::effect {

namespace {

constexpr std::size_t phaseCount = 4;

/// The coefficients of ITU-R BS.1770-4, Annex 2, for the first two phases. The other two are these
/// backwards.
constexpr std::array<std::array<float, TruePeakLevel::taps>, 2> coefficients{{
    {0.0017089843750F, 0.0109863281250F, -0.0196533203125F, 0.0332031250000F, -0.0594482421875F,
     0.1373291015625F, 0.9721679687500F, -0.1022949218750F, 0.0476074218750F, -0.0266113281250F,
     0.0148925781250F, -0.0083007812500F},
    {-0.0291748046875F, 0.0292968750000F, -0.0517578125000F, 0.0891113281250F, -0.1665039062500F,
     0.4650878906250F, 0.7797851562500F, -0.2003173828125F, 0.1015625000000F, -0.0582275390625F,
     0.0330810546875F, -0.0189208984375F},
}};

/// No interpolated value exceeds the highest sample by more: the sum of a phase's coefficients.
constexpr float largestGain = 2.03F;

constexpr float coefficient(std::size_t phase, std::size_t tap) {
    return phase < 2 ? coefficients[phase][tap]
                     : coefficients[phaseCount - 1 - phase][TruePeakLevel::taps - 1 - tap];
}

float highestSample(const float* samples, std::size_t count) {
    float result = 0.0F;
    for (std::size_t i = 0; i < count; ++i) {
        result = std::max(result, std::abs(samples[i]));
    }
    return result;
}

}  // namespace

float TruePeakLevel::highest(const float* samples, std::uint32_t count, float start) {
    std::array<float, taps - 1 + chunkFrames> line{};
    std::copy(recent_.begin(), recent_.end(), line.begin());
    std::copy_n(samples, count, line.begin() + recent_.size());
    std::copy_n(line.begin() + count, recent_.size(), recent_.begin());
    float result = start;
    if (largestGain * highestSample(line.data(), recent_.size() + count) <= start) {
        return result;
    }
    for (std::size_t phase = 0; phase < phaseCount; ++phase) {
        Chunk sum{};
        for (std::size_t tap = 0; tap < taps; ++tap) {
            // The first coefficient belongs to the newest sample.
            const float* from = line.data() + (taps - 1 - tap);
            const float factor = coefficient(phase, tap);
            for (std::size_t i = 0; i < chunkFrames; ++i) {
                sum[i] += factor * from[i];
            }
        }
        result = std::max(result, highestSample(sum.data(), count));
    }
    return result;
}

}  // namespace orvalo::effect
