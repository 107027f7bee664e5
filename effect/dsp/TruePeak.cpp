#include "effect/dsp/TruePeak.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "effect/dsp/Extremes.h"
#include "effect/dsp/VectorClones.h"

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

/// The even part of a phase's coefficients, and its odd part with sign -1.
constexpr float part(std::uint32_t phase, std::uint32_t pair, float sign) {
    return 0.5F * (halves[phase][pair] + sign * halves[phase][TruePeak::taps - 1 - pair]);
}

/// No value of a phase exceeds the highest sample by more: the sum of its coefficients.
constexpr std::array<float, 2> largestGain{1.44F, 2.03F};

/// What the even or the odd part of a phase gives at a frame. newest: its sample.
template <std::uint32_t phase, std::uint32_t... pair>
inline float even(const float* newest, std::integer_sequence<std::uint32_t, pair...> /*all*/) {
    return (... + (part(phase, pair, 1.0F) *
                   (*(newest - pair) + *(newest - (TruePeak::taps - 1 - pair)))));
}
template <std::uint32_t phase, std::uint32_t... pair>
inline float odd(const float* newest, std::integer_sequence<std::uint32_t, pair...> /*all*/) {
    return (... + (part(phase, pair, -1.0F) *
                   (*(newest - pair) - *(newest - (TruePeak::taps - 1 - pair)))));
}

/// The greater absolute value of a phase and of the reversed one, which are the sum and the
/// difference of the two parts.
template <std::uint32_t phase>
inline float higher(const float* newest) {
    constexpr std::make_integer_sequence<std::uint32_t, TruePeak::taps / 2> all;
    return std::abs(even<phase>(newest, all)) + std::abs(odd<phase>(newest, all));
}

}  // namespace

void TruePeak::reset() {
    samples_.fill(0.0F);
    lastPeak_ = 0.0F;
}

ORVALO_VECTOR_CLONES
float TruePeak::highest(const float* samples, std::uint32_t count, float peak, float start) {
    std::copy_n(samples, count, samples_.begin() + before);
    const float among = std::max(peak, lastPeak_);
    lastPeak_ = count < before ? among : peak;
    if (largestGain[1] * among > start) {
        const float* newest = samples_.data() + before;
        Chunk peaks;
        for (std::uint32_t i = 0; i < count; ++i) {
            peaks[i] = higher<1>(newest + i);
        }
        start = effect::highest(peaks.data(), count, std::max(peak, start));
        if (largestGain[0] * among > start) {
            for (std::uint32_t i = 0; i < count; ++i) {
                peaks[i] = higher<0>(newest + i);
            }
            start = effect::highest(peaks.data(), count, start);
        }
    }
    keepLast(count);
    return start;
}

void TruePeak::raise(const float* samples, float* peaks, std::uint32_t count) {
    std::copy_n(samples, count, samples_.begin() + before);
    interpolate(peaks, count);
    keepLast(count);
}

ORVALO_VECTOR_CLONES
void TruePeak::interpolate(float* peaks, std::uint32_t count) const {
    const float* newest = samples_.data() + before;
    for (std::uint32_t i = 0; i < count; ++i) {
        const float interpolated = std::max(higher<0>(newest + i), higher<1>(newest + i));
        peaks[i] = std::max({peaks[i], std::abs(newest[i]), interpolated});
    }
}

void TruePeak::keepLast(std::uint32_t count) {
    std::copy_n(samples_.begin() + count, before, samples_.begin());
}

}  // namespace orvalo::effect
