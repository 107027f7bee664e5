#include "effect/dsp/Oversampler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "effect/dsp/VectorClones.h"

namespace orvalo::effect {

namespace {

/// Half the length of the filters, in frames at the lower rate.
constexpr std::uint32_t reach = Oversampler::latency / 2;
/// The window's shape, for a stop band of -114 dB.
constexpr double beta = 11.7;
/// The filters' lengths are multiples of this, and so many sums are kept, because a single sum
/// could not be vectorised.
constexpr std::size_t laneCount = 8;

/// The modified Bessel function of the first kind and order 0, by its series.
double bessel(double x) {
    double term = 1.0;
    double sum = 1.0;
    for (int k = 1; term > 1e-18 * sum; ++k) {
        term *= 0.25 * x * x / (static_cast<double>(k) * static_cast<double>(k));
        sum += term;
    }
    return sum;
}

/// The prototype at a time in frames of the lower rate.
double prototype(double time) {
    const double share = time / reach;
    if (std::abs(share) >= 1.0) {
        return 0.0;
    }
    const double angle = std::numbers::pi * time;
    const double sinc = time == 0.0 ? 1.0 : std::sin(angle) / angle;
    return sinc * bessel(beta * std::sqrt(1.0 - share * share)) / bessel(beta);
}

inline float dot(const float* one, const float* other, std::size_t count) {
    std::array<float, laneCount> sums{};
    for (std::size_t i = 0; i < count; i += laneCount) {
        for (std::size_t lane = 0; lane < laneCount; ++lane) {
            sums[lane] += one[i + lane] * other[i + lane];
        }
    }
    return ((sums[0] + sums[1]) + (sums[2] + sums[3])) +
           ((sums[4] + sums[5]) + (sums[6] + sums[7]));
}

/// Moves the last frames of a history to its start, after `count` new ones were used.
void shift(std::vector<float>& history, std::size_t kept, std::size_t count) {
    std::copy_n(history.begin() + static_cast<std::ptrdiff_t>(count), kept, history.begin());
}

}  // namespace

Oversampler::Oversampler(std::uint32_t factor)
    : factor_(factor),
      lower_(2 * reach - 1 + chunkFrames),
      higher_(2 * reach * factor - 1 + chunkFrames) {
    for (std::uint32_t phase = 0; phase < factor; ++phase) {
        auto& coefficients = phases_.emplace_back();
        for (std::uint32_t i = 0; i < 2 * reach; ++i) {
            // The newest frame is reach - 1 frames ahead of the middle.
            const double time = static_cast<double>(reach) - 1.0 - static_cast<double>(i) +
                                static_cast<double>(phase) / factor;
            coefficients.push_back(static_cast<float>(prototype(time)));
        }
    }
    for (std::uint32_t i = 0; i < 2 * reach * factor; ++i) {
        const double time = static_cast<double>(i + 1) / factor - static_cast<double>(reach);
        all_.push_back(static_cast<float>(prototype(time) / factor));
    }
}

void Oversampler::reset() {
    std::fill(lower_.begin(), lower_.end(), 0.0F);
    std::fill(higher_.begin(), higher_.end(), 0.0F);
}

ORVALO_VECTOR_CLONES
void Oversampler::up(const float* samples, float* oversampled, std::uint32_t count) {
    const std::size_t length = phases_.front().size();
    std::copy_n(samples, count, lower_.begin() + static_cast<std::ptrdiff_t>(length - 1));
    for (std::uint32_t i = 0; i < count; ++i) {
        for (const auto& coefficients : phases_) {
            *oversampled++ = dot(coefficients.data(), lower_.data() + i, length);
        }
    }
    shift(lower_, length - 1, count);
}

ORVALO_VECTOR_CLONES
void Oversampler::down(const float* oversampled, float* samples, std::uint32_t count) {
    const std::size_t length = all_.size();
    std::copy_n(oversampled, std::size_t{count} * factor_,
                higher_.begin() + static_cast<std::ptrdiff_t>(length - 1));
    for (std::uint32_t i = 0; i < count; ++i) {
        samples[i] = dot(all_.data(), higher_.data() + std::size_t{i} * factor_, length);
    }
    shift(higher_, length - 1, std::size_t{count} * factor_);
}

}  // namespace orvalo::effect
