#include "platform/audio/engine/RenderPlan.h"

#include <algorithm>

namespace orvalo {

namespace {

void add(const AudioBlock& from, const AudioBlock& to) noexcept {
    for (std::uint32_t channel = 0; channel < to.channelCount; ++channel) {
        const float* source = from.channels[channel];
        float* target = to.channels[channel];
        for (std::uint32_t frame = 0; frame < to.frameCount; ++frame) {
            target[frame] += source[frame];
        }
    }
}

std::uint32_t widestStep(const std::vector<RenderPlan::Branch>& branches) {
    std::uint32_t channels = 1;
    for (const auto& branch : branches) {
        for (const auto& step : branch.steps) {
            channels = std::max({channels, step.inputChannels, step.outputChannels});
        }
    }
    return channels;
}

AVAudioPCMBuffer makeBuffer(std::uint32_t channels, std::uint32_t frames) {
    return {AVAudioFormat{.channelCount = channels}, frames};
}

}  // namespace

RenderPlan::RenderPlan(std::vector<Branch> branches, std::uint32_t outputChannels,
                       std::uint32_t maximumFrames)
    : branches_(std::move(branches)),
      outputChannels_(outputChannels),
      maximumFrames_(maximumFrames),
      chain_{makeBuffer(widestStep(branches_), maximumFrames),
             makeBuffer(widestStep(branches_), maximumFrames)},
      mix_(makeBuffer(outputChannels, maximumFrames)) {}

void RenderPlan::render(const AudioBlock& block) noexcept {
    for (std::uint32_t done = 0; done < block.frameCount;) {
        const auto count = sliceThatFits(block.frameCount - done);
        renderSlice(AudioBlockPart(block, done, count).block());
        done += count;
    }
}

std::uint32_t RenderPlan::sliceThatFits(std::uint32_t frameCount) const noexcept {
    auto slice = std::min(frameCount, maximumFrames_);
    for (const auto& branch : branches_) {
        if (branch.converter && branch.converter->inputFormat().sampleRate !=
                                    branch.converter->outputFormat().sampleRate) {
            slice = std::min(slice, kMaximumFramesToRender);
            while (slice > 1 &&
                   branch.converter->inputFramesNeeded(slice) > kMaximumFramesToRender) {
                slice /= 2;
            }
        }
    }
    return slice;
}

void RenderPlan::renderSlice(const AudioBlock& slice) noexcept {
    // A device that has just changed its channels may render once with the old plan.
    if (branches_.empty() || slice.channelCount != outputChannels_) {
        silence(slice);
        return;
    }
    renderBranch(branches_.front(), slice);
    for (std::size_t index = 1; index < branches_.size(); ++index) {
        const AudioBlock mix = mix_.block(slice.frameCount);
        renderBranch(branches_[index], mix);
        add(mix, slice);
    }
}

void RenderPlan::renderBranch(const Branch& branch, const AudioBlock& output) noexcept {
    if (!branch.converter) {
        renderSteps(branch, output);
        return;
    }
    const auto needed = branch.converter->inputFramesNeeded(output.frameCount);
    auto& last = chain_[(branch.steps.size() - 1) % 2];
    const AudioBlock input{last.floatChannelData(), branch.steps.back().outputChannels, needed};
    renderSteps(branch, input);
    branch.converter->convert(input, output);
}

void RenderPlan::renderSteps(const Branch& branch, const AudioBlock& output) noexcept {
    AudioBlock input{nullptr, 0, output.frameCount};
    for (std::size_t index = 0; index < branch.steps.size(); ++index) {
        const auto& step = branch.steps[index];
        const bool isLast = index + 1 == branch.steps.size();
        const AudioBlock result = isLast ? output
                                         : AudioBlock{chain_[index % 2].floatChannelData(),
                                                      step.outputChannels, output.frameCount};
        step.kernel->render(input, result);
        input = result;
    }
}

}  // namespace orvalo
