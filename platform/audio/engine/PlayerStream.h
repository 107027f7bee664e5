#pragma once

#include <cstdint>
#include <memory>

#include "platform/audio/engine/PlayerRing.h"
#include "platform/audio/signal/SampleRateConverter.h"

namespace orvalo {

/// What a player's render side reads: the ring, and the conversion to the connection's format where
/// that is another one.
class PlayerStream {
  public:
    PlayerStream(std::shared_ptr<PlayerRing> ring, const AVAudioFormat& outputFormat);

    const std::shared_ptr<PlayerRing>& ring() const { return ring_; }

    /// The most frames of the ring that one render() asks for.
    std::uint32_t largestDemand() const { return largestDemand_; }

    /// Fills output, with silence where the ring ran out; returns whether it did not. Render
    /// thread.
    bool render(const AudioBlock& output) noexcept;

  private:
    bool readOrClear(const AudioBlock& block) noexcept;

    const std::shared_ptr<PlayerRing> ring_;
    std::unique_ptr<SampleRateConverter> converter_;
    std::uint32_t largestDemand_ = kMaximumFramesToRender;
    AVAudioPCMBuffer input_;
};

}  // namespace orvalo
