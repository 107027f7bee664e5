#include "platform/audio/bridge/host/DelayedInput.h"

#include <algorithm>

namespace orvalo {

namespace {

std::size_t placeOf(std::int64_t frame) {
    constexpr std::int64_t kLength = DelayedInput::kLongestDelay;
    return static_cast<std::size_t>((frame + kLength) % kLength);
}

}  // namespace

DelayedInput::DelayedInput(std::uint32_t channelCount)
    : kept_(channelCount, std::vector<float>(kLongestDelay)),
      delayed_(channelCount, std::vector<float>(kMaximumFramesToRender)) {
    for (auto& channel : delayed_) {
        channels_.push_back(channel.data());
    }
}

AudioBlockPart DelayedInput::read(const AudioBlock& input, std::uint32_t from,
                                  std::uint32_t frameCount, std::uint32_t delay) noexcept {
    if (delay == 0) {
        return {input, from, frameCount};
    }
    const auto first = std::int64_t{from} - std::min(delay, kLongestDelay);
    for (std::size_t channel = 0; channel < delayed_.size(); ++channel) {
        for (std::uint32_t frame = 0; frame < frameCount; ++frame) {
            const auto source = first + frame;
            delayed_[channel][frame] = source < 0 ? kept_[channel][placeOf(start_ + source)]
                                                  : input.channels[channel][source];
        }
    }
    const auto channelCount = static_cast<std::uint32_t>(channels_.size());
    return {AudioBlock{channels_.data(), channelCount, frameCount}, 0, frameCount};
}

void DelayedInput::keep(const AudioBlock& input, std::uint32_t delay) noexcept {
    const auto count = std::min({delay, kLongestDelay, input.frameCount});
    for (std::size_t channel = 0; channel < kept_.size(); ++channel) {
        for (auto frame = input.frameCount - count; frame < input.frameCount; ++frame) {
            kept_[channel][placeOf(start_ + frame)] = input.channels[channel][frame];
        }
    }
    start_ += input.frameCount;
}

}  // namespace orvalo
