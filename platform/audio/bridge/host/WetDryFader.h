#pragma once

#include <array>
#include <cstdint>

#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

/// Changes between an effect's output (wet) and its input (dry) without a click. From wet to dry,
/// the difference between the last wet and the first dry sample of each channel fades out linearly;
/// from dry to wet, a linear crossfade. A fade has kFadeFrames frames, at most the block's. Render
/// thread.
class WetDryFader {
  public:
    static constexpr std::uint32_t kFadeFrames = 64;

    /// Writes wet, which has output's channels and at least one frame; mapChannels() maps dry, of
    /// which the first kFadeFrames count.
    void writeWet(const AudioBlock& dry, const AudioBlock& wet, const AudioBlock& output) noexcept;
    /// Writes dry.
    void writeDry(const AudioBlock& dry, const AudioBlock& output) noexcept;

  private:
    /// The previous block; the first one needs no fade.
    enum class Before { nothing, wet, dry };

    Before before_ = Before::nothing;
    std::array<float, kMaximumChannels> last_{};  ///< Each channel's last wet sample.
};

}  // namespace orvalo
