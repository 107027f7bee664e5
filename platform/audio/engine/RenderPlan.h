#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/audio/engine/AVAudioNode.h"
#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/audio/signal/SampleRateConverter.h"

namespace orvalo {

/// The compiled graph, flat and with all buffers. Each branch is a chain of kernels from a source
/// to the mixer, which converts the branch's signal and adds it to the output. Made by
/// GraphCompiler off the render thread; rendering never allocates, locks, logs or blocks.
class RenderPlan {
  public:
    struct Step {
        std::shared_ptr<RenderKernel> kernel;
        std::uint32_t inputChannels = 0;
        std::uint32_t outputChannels = 0;
    };

    struct Branch {
        std::vector<Step> steps;  ///< From the source on; never empty.
        /// From the last step's format to the output's; null when they are equal.
        std::shared_ptr<SampleRateConverter> converter;
    };

    /// maximumFrames: the most frames that one pass over the branches renders.
    RenderPlan(std::vector<Branch> branches, std::uint32_t outputChannels,
               std::uint32_t maximumFrames);

    /// Fills the block, of the output's channels and any number of frames.
    void render(const AudioBlock& block) noexcept;

    /// How many of frameCount frames one pass over the branches can render. Before a converter of
    /// rates, at most kMaximumFramesToRender.
    std::uint32_t sliceThatFits(std::uint32_t frameCount) const noexcept;

  private:
    void renderSlice(const AudioBlock& slice) noexcept;
    void renderBranch(const Branch& branch, const AudioBlock& output) noexcept;
    void renderSteps(const Branch& branch, const AudioBlock& output) noexcept;

    std::vector<Branch> branches_;
    std::uint32_t outputChannels_;
    std::uint32_t maximumFrames_;
    std::array<AVAudioPCMBuffer, 2> chain_;  ///< Between two steps, alternating.
    AVAudioPCMBuffer mix_;                   ///< A branch before it is added to the output.
};

}  // namespace orvalo
