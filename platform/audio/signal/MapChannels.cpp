#include "platform/audio/signal/MapChannels.h"

#include <algorithm>

namespace orvalo {

namespace {

void writeMean(const AudioBlock& input, float* mono) noexcept {
    const float share = 1.0F / static_cast<float>(input.channelCount);
    for (std::uint32_t frame = 0; frame < input.frameCount; ++frame) {
        float sum = 0.0F;
        for (std::uint32_t channel = 0; channel < input.channelCount; ++channel) {
            sum += input.channels[channel][frame];
        }
        mono[frame] = sum * share;
    }
}

}  // namespace

void mapChannels(const AudioBlock& input, const AudioBlock& output) noexcept {
    if (output.channelCount == 1 && input.channelCount > 1) {
        writeMean(input, output.channels[0]);
        return;
    }
    for (std::uint32_t channel = 0; channel < output.channelCount; ++channel) {
        float* const target = output.channels[channel];
        const std::uint32_t source = input.channelCount == 1 ? 0 : channel;
        if (source >= input.channelCount) {
            std::fill_n(target, output.frameCount, 0.0F);
        } else if (input.channels[source] != target) {
            std::copy_n(input.channels[source], output.frameCount, target);
        }
    }
}

}  // namespace orvalo
