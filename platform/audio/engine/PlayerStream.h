#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>

#include "platform/audio/engine/PlayerRing.h"
#include "platform/audio/signal/SampleRateConverter.h"

namespace orvalo {

/// The render thread's end of a player: reads the ring and converts to the connection's format.
class PlayerStream {
  public:
    PlayerStream(std::shared_ptr<PlayerRing> ring, const AVAudioFormat& outputFormat);

    const std::shared_ptr<PlayerRing>& ring() const { return ring_; }

    /// The most frames that one render() reads from the ring.
    std::uint32_t largestDemand() const { return largestDemand_; }
    /// The frames that the next render() of frameCount frames reads. Render thread.
    std::uint32_t demand(std::uint32_t frameCount) const noexcept {
        return converter_ ? std::min(converter_->inputFramesNeeded(frameCount), largestDemand_)
                          : frameCount;
    }

    /// Fills output, with silence after the ring's last frame; false when the ring ran out. Render
    /// thread.
    bool render(const AudioBlock& output) noexcept;

  private:
    bool readOrClear(const AudioBlock& block) noexcept;

    const std::shared_ptr<PlayerRing> ring_;
    std::unique_ptr<SampleRateConverter> converter_;
    std::uint32_t largestDemand_;
    AVAudioPCMBuffer input_;
};

}  // namespace orvalo
