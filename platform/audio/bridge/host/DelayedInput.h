#pragma once

#include <cstdint>
#include <vector>

#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

/// The input of an effect, delayed like the effect's output, so that the dry signal takes the place
/// of the wet one. Render thread, apart from the constructor.
class DelayedInput {
  public:
    /// Longer delays count as this one. Frames.
    static constexpr std::uint32_t kLongestDelay = kMaximumOfflineFrames;

    explicit DelayedInput(std::uint32_t channelCount);

    /// frameCount frames, up to kMaximumFramesToRender, from the frame `from` of the present input
    /// on, delayed. Valid until the next call.
    AudioBlockPart read(const AudioBlock& input, std::uint32_t from, std::uint32_t frameCount,
                        std::uint32_t delay) noexcept;
    /// Ends the present input: keeps of it what the delay needs later.
    void keep(const AudioBlock& input, std::uint32_t delay) noexcept;

  private:
    std::vector<std::vector<float>> kept_;  // By channel: the frame t at t % kLongestDelay.
    std::vector<std::vector<float>> delayed_;
    std::vector<float*> channels_;  // Of delayed_.
    std::int64_t start_ = 0;        // The frame where the present input starts.
};

}  // namespace orvalo
