#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace orvalo {

/// A view of planar 32-bit float audio: channelCount pointers to frameCount samples each. Owns
/// nothing. Full scale is ±1.
struct AudioBlock {
    float* const* channels = nullptr;
    std::uint32_t channelCount = 0;
    std::uint32_t frameCount = 0;
};

/// Sets all samples to 0.
inline void silence(const AudioBlock& block) noexcept {
    for (std::uint32_t channel = 0; channel < block.channelCount; ++channel) {
        std::fill_n(block.channels[channel], block.frameCount, 0.0F);
    }
}

/// The maximum number of channels of a node.
constexpr std::uint32_t kMaximumChannels = 32;

/// The maximum number of frames that a node renders in one call; larger quanta are sliced.
constexpr std::uint32_t kMaximumFramesToRender = 4096;

/// The same in offline rendering, for nodes that allow it: a hand-over to an effect service costs
/// as much for many frames as for few. A multiple of kMaximumFramesToRender.
constexpr std::uint32_t kMaximumOfflineFrames = 8 * kMaximumFramesToRender;

/// A view of some frames of a block, which must outlive it.
class AudioBlockPart {
  public:
    AudioBlockPart(const AudioBlock& whole, std::uint32_t from, std::uint32_t frameCount) noexcept
        : channelCount_(whole.channelCount), frameCount_(frameCount) {
        for (std::uint32_t channel = 0; channel < channelCount_; ++channel) {
            channels_[channel] = whole.channels[channel] + from;
        }
    }

    AudioBlock block() const noexcept { return {channels_.data(), channelCount_, frameCount_}; }

  private:
    std::array<float*, kMaximumChannels> channels_;
    std::uint32_t channelCount_;
    std::uint32_t frameCount_;
};

}  // namespace orvalo
