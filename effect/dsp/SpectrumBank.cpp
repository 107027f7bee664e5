#include "effect/dsp/SpectrumBank.h"

#include <algorithm>
#include <numbers>

#include "effect/dsp/TimeConstant.h"

namespace orvalo::effect {

namespace {

constexpr float smoothingMilliseconds = 80.0F;
/// Holds the highest band.
constexpr double lowestFullRate = 44100.0;
constexpr double levelsPerSecond = 25.0;
/// Of each of the two filters: together they are a third of an octave wide.
constexpr double quality = 2.78;
constexpr double widest = 2.5;

}  // namespace

// A. Simper, "Linear Trapezoidal Integrated State Variable Filter": the band-pass.
SpectrumBank::SpectrumBank(double sampleRate)
    : step_(std::max(1U, static_cast<std::uint32_t>(sampleRate / lowestFullRate))),
      watchedFrames_(static_cast<std::uint32_t>(watchedSeconds * sampleRate)),
      period_(std::max(1U, static_cast<std::uint32_t>(sampleRate / levelsPerSecond))) {
    const double rate = sampleRate / step_;
    taken_ = static_cast<float>(takenPerFrame(smoothingMilliseconds, rate));
    for (std::size_t band = 0; band < bandCount; ++band) {
        // A band that the rate cannot hold keeps coefficients of 0, and stays silent.
        const double w = std::numbers::pi * frequency(band) / rate;
        if (w >= 0.47 * std::numbers::pi) {
            continue;
        }
        const double g = std::tan(w);
        // The bilinear transform would narrow the highest bands. The last one would then reach far
        // down.
        const double wide = std::min(2.0 * w / std::sin(2.0 * w), widest);
        const double k = 2.0 * std::sinh(std::asinh(0.5 / quality) * wide);
        const double a1 = 1.0 / (1.0 + g * (g + k));
        // What the mean of the samples has lost, for one of the two filters.
        const double lost = std::sin(w) / (step_ * std::sin(w / step_));
        a1_[band] = static_cast<float>(a1);
        a2_[band] = static_cast<float>(g * a1);
        a3_[band] = static_cast<float>(g * g * a1);
        gain_[band] = static_cast<float>(k / std::sqrt(lost));
    }
}

void SpectrumBank::watch() {
    if (framesLeft_ == 0) {
        channels_ = {};
        sinceTaken_ = 0;
    }
    framesLeft_ = watchedFrames_;
}

void SpectrumBank::process(const float* left, const float* right, std::uint32_t count) {
    process(channels_[0], left, count);
    process(channels_[1], right, count);
    framesLeft_ -= std::min(framesLeft_, count);
    sinceTaken_ += count;
}

void SpectrumBank::process(Channel& channel, const float* samples, std::uint32_t count) const {
    for (std::uint32_t i = 0; i < count; ++i) {
        channel.sum += samples[i];
        if (++channel.summed == step_) {
            filter(channel, channel.sum / static_cast<float>(step_));
            channel.sum = 0.0F;
            channel.summed = 0;
        }
    }
}

void SpectrumBank::filter(Channel& channel, float sample) const {
    for (std::size_t band = 0; band < lanes; ++band) {
        float value = sample;
        for (Filter& filter : channel.filters) {
            const float rest = value - filter.second[band];
            const float middle = a1_[band] * filter.first[band] + a2_[band] * rest;
            const float low =
                filter.second[band] + a2_[band] * filter.first[band] + a3_[band] * rest;
            filter.first[band] = 2.0F * middle - filter.first[band];
            filter.second[band] = 2.0F * low - filter.second[band];
            value = gain_[band] * middle;
        }
        channel.power[band] += taken_ * (value * value - channel.power[band]);
    }
}

bool SpectrumBank::takeLevels(Levels& levels) {
    if (!isWatched() || sinceTaken_ < period_) {
        return false;
    }
    sinceTaken_ = 0;
    for (std::size_t band = 0; band < bandCount; ++band) {
        const float power = std::max(channels_[0].power[band], channels_[1].power[band]);
        // The mean power of a sine of full scale is one half.
        levels[band] = std::max(lowest, 10.0F * std::log10(std::max(2.0F * power, 1e-20F)));
    }
    return true;
}

}  // namespace orvalo::effect
