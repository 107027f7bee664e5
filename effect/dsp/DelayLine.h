#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "effect/dsp/Chunk.h"

namespace orvalo::effect {

/// The last frames of a channel. Its memory is allocated at construction.
class DelayLine {
  public:
    /// longest: the longest delay that is read.
    explicit DelayLine(std::uint32_t longest) : samples_(longest + chunkFrames) {}

    void reset() { std::fill(samples_.begin(), samples_.end(), 0.0F); }

    /// Appends `count` frames, at most chunkFrames.
    void write(const float* samples, std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) {
            samples_[next_] = samples[i];
            next_ = next_ + 1 == samples_.size() ? 0 : next_ + 1;
        }
    }

    /// Reads the last `count` frames as they were `delay` frames before.
    void read(std::uint32_t delay, float* samples, std::uint32_t count) const {
        std::size_t at = next_ + samples_.size() - delay - count;
        at = at >= samples_.size() ? at - samples_.size() : at;
        for (std::uint32_t i = 0; i < count; ++i) {
            samples[i] = samples_[at];
            at = at + 1 == samples_.size() ? 0 : at + 1;
        }
    }

  private:
    std::vector<float> samples_;
    std::size_t next_ = 0;
};

}  // namespace orvalo::effect
