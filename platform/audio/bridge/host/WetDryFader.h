#pragma once

#include <array>
#include <cstdint>

#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

/// Passes from what an effect made (wet) to what it was fed (dry) and back without a step. From wet
/// to dry, the difference between the last wet and the first dry sample of each channel fades out
/// linearly; from dry to wet, the two are crossfaded linearly; within kFadeFrames frames, or the
/// block's when it has fewer. Render thread.
class WetDryFader {
  public:
    static constexpr std::uint32_t kFadeFrames = 64;

    /// Fills output from wet, of the same channels and frames, at least one; dry is mapped to the
    /// output's channels as mapChannels() does.
    void writeWet(const AudioBlock& dry, const AudioBlock& wet, const AudioBlock& output) noexcept;
    /// Fills output from dry, likewise.
    void writeDry(const AudioBlock& dry, const AudioBlock& output) noexcept;

  private:
    /// What the block before was; no fade follows nothing.
    enum class Before { nothing, wet, dry };

    Before before_ = Before::nothing;
    std::array<float, kMaximumChannels> last_{};  ///< Each channel's last wet sample.
};

}  // namespace orvalo
