#include "effect/dsp/LevelDetector.h"

#include <algorithm>
#include <cmath>

#include "effect/dsp/Chunk.h"
#include "effect/dsp/TimeConstant.h"
#include "effect/dsp/VectorClones.h"

namespace orvalo::effect {

void LevelDetector::configure(bool isRms, float window) {
    if (isRms && !isRms_) {
        reset();
    }
    isRms_ = isRms;
    if (window != window_) {
        window_ = window;
        take_ = takenPerFrame(window, sampleRate_);
    }
}

ORVALO_VECTOR_CLONES
void LevelDetector::linked(const float* left, const float* right, float* amplitude,
                           std::uint32_t count) {
    if (!isRms_) {
        for (std::uint32_t i = 0; i < count; ++i) {
            amplitude[i] = std::max(std::abs(left[i]), std::abs(right[i]));
        }
        return;
    }
    Chunk other;
    separate(left, right, amplitude, other.data(), count);
    for (std::uint32_t i = 0; i < count; ++i) {
        amplitude[i] = std::max(amplitude[i], other[i]);
    }
}

ORVALO_VECTOR_CLONES
void LevelDetector::separate(const float* left, const float* right, float* leftAmplitude,
                             float* rightAmplitude, std::uint32_t count) {
    if (isRms_) {
        takeMean(left, means_[0], leftAmplitude, count);
        takeMean(right, means_[1], rightAmplitude, count);
        return;
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        leftAmplitude[i] = std::abs(left[i]);
        rightAmplitude[i] = std::abs(right[i]);
    }
}

void LevelDetector::takeMean(const float* samples, double& mean, float* amplitude,
                             std::uint32_t count) const {
    double now = mean;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto sample = static_cast<double>(samples[i]);
        now += take_ * (sample * sample - now);
        amplitude[i] = static_cast<float>(now);
    }
    mean = now;
    // On its own, because a loop without a recursion becomes vector code.
    for (std::uint32_t i = 0; i < count; ++i) {
        amplitude[i] = std::sqrt(amplitude[i]);
    }
}

}  // namespace orvalo::effect
