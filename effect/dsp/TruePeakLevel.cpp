#include "effect/dsp/TruePeakLevel.h"

#include <algorithm>
#include <cmath>

namespace orvalo::effect {

namespace {

constexpr std::size_t phaseCount = 4;

using Phases = std::array<std::array<float, TruePeakLevel::taps>, phaseCount>;

/// The coefficients of ITU-R BS.1770-4, Annex 2, for the oldest sample first.
constexpr Phases makeFilter() {
    // The first two phases; the other two are these backwards. So the set is the same for either
    // order of the samples.
    constexpr std::array<std::array<float, TruePeakLevel::taps>, 2> half{{
        {0.0017089843750F, 0.0109863281250F, -0.0196533203125F, 0.0332031250000F, -0.0594482421875F,
         0.1373291015625F, 0.9721679687500F, -0.1022949218750F, 0.0476074218750F, -0.0266113281250F,
         0.0148925781250F, -0.0083007812500F},
        {-0.0291748046875F, 0.0292968750000F, -0.0517578125000F, 0.0891113281250F,
         -0.1665039062500F, 0.4650878906250F, 0.7797851562500F, -0.2003173828125F, 0.1015625000000F,
         -0.0582275390625F, 0.0330810546875F, -0.0189208984375F},
    }};
    Phases phases{};
    for (std::size_t phase = 0; phase < 2; ++phase) {
        for (std::size_t tap = 0; tap < TruePeakLevel::taps; ++tap) {
            phases[phase][tap] = half[phase][tap];
            phases[phaseCount - 1 - phase][TruePeakLevel::taps - 1 - tap] = half[phase][tap];
        }
    }
    return phases;
}

constexpr Phases filter = makeFilter();

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

float TruePeakLevel::highest(const float* samples, std::uint32_t count, float start) {
    std::array<float, taps - 1 + chunkFrames> line{};
    std::copy(recent_.begin(), recent_.end(), line.begin());
    std::copy_n(samples, count, line.begin() + recent_.size());
    std::copy_n(line.begin() + count, recent_.size(), recent_.begin());
    float result = start;
    if (largestGain * highestSample(line.data(), recent_.size() + count) <= start) {
        return result;
    }
    // Several frames at once, whose sums stay in registers.
    constexpr std::size_t laneCount = 8;
    std::array<float, laneCount> highest{};
    const std::size_t whole = count - count % laneCount;
    for (std::size_t phase = 0; phase < phaseCount; ++phase) {
        for (std::size_t frame = 0; frame < whole; frame += laneCount) {
            std::array<float, laneCount> sum{};
            for (std::size_t tap = 0; tap < taps; ++tap) {
                const float factor = filter[phase][tap];
                for (std::size_t lane = 0; lane < laneCount; ++lane) {
                    sum[lane] += factor * line[frame + tap + lane];
                }
            }
            for (std::size_t lane = 0; lane < laneCount; ++lane) {
                highest[lane] = std::max(highest[lane], std::abs(sum[lane]));
            }
        }
        for (std::size_t frame = whole; frame < count; ++frame) {
            float sum = 0.0F;
            for (std::size_t tap = 0; tap < taps; ++tap) {
                sum += filter[phase][tap] * line[frame + tap];
            }
            result = std::max(result, std::abs(sum));
        }
    }
    result = std::max(result, *std::max_element(highest.begin(), highest.end()));
    return result;
}

}  // namespace orvalo::effect
