#include "effect/dsp/LevelDetector.h"

#include <algorithm>
#include <cmath>

#include "effect/dsp/Chunk.h"
#include "effect/dsp/TimeConstant.h"
#include "effect/dsp/VectorClones.h"

namespace orvalo::effect {

namespace {

/// The crest at the middle one of three amplitudes, or this amplitude if it is none.
inline float crest(float before, float middle, float after) {
    const float rise = middle - before;
    const float fall = middle - after;
    const float bend = rise + fall;
    const bool isCrest = rise >= 0.0F && fall >= 0.0F && bend > 0.0F;
    return middle + (isCrest ? (rise - fall) * (rise - fall) / (8.0F * bend) : 0.0F);
}

}  // namespace

void LevelDetector::configure(bool isRms, float window) {
    if (isRms != isRms_) {
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
    if (!isRms_ && crests_ == Crests::ofFrames) {
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
    if (crests_ == Crests::exact) {
        raiseCrests(leftAmplitude, last_[0], count);
        raiseCrests(rightAmplitude, last_[1], count);
    }
}

void LevelDetector::raiseCrests(float* amplitude, Last& last, std::uint32_t count) {
    std::array<float, 2 + chunkFrames> all;
    std::copy(last.begin(), last.end(), all.begin());
    std::copy_n(amplitude, count, all.begin() + 2);
    for (std::uint32_t i = 0; i < count; ++i) {
        amplitude[i] = crest(all[i], all[i + 1], all[i + 2]);
    }
    std::copy_n(all.begin() + count, last.size(), last.begin());
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
