#include "platform/audio/bridge/host/WetDryFader.h"

#include <algorithm>
#include <cmath>

#include "platform/audio/signal/MapChannels.h"

namespace orvalo {

void WetDryFader::writeWet(const AudioBlock& dry, const AudioBlock& wet,
                           const AudioBlock& output) noexcept {
    const auto faded =
        before_ == Before::dry ? std::min(kFadeFrames, output.frameCount) : std::uint32_t{0};
    if (faded > 0) {
        mapChannels({dry.channels, dry.channelCount, faded},
                    {output.channels, output.channelCount, faded});
    }
    for (std::uint32_t channel = 0; channel < output.channelCount; ++channel) {
        const float* from = wet.channels[channel];
        float* to = output.channels[channel];
        for (std::uint32_t frame = 0; frame < faded; ++frame) {
            const float share = static_cast<float>(frame) / static_cast<float>(faded);
            to[frame] = to[frame] * (1.0F - share) + from[frame] * share;
        }
        std::copy_n(from + faded, output.frameCount - faded, to + faded);
        last_[channel] = to[output.frameCount - 1];
    }
    before_ = Before::wet;
}

void WetDryFader::writeDry(const AudioBlock& dry, const AudioBlock& output) noexcept {
    mapChannels(dry, output);
    if (before_ == Before::wet) {
        const auto faded = std::min(kFadeFrames, output.frameCount);
        for (std::uint32_t channel = 0; channel < output.channelCount; ++channel) {
            float* to = output.channels[channel];
            const float step = last_[channel] - to[0];
            if (!std::isfinite(step)) {
                continue;  // A NaN of the effect must not reach the dry signal.
            }
            for (std::uint32_t frame = 0; frame < faded; ++frame) {
                const float rest = static_cast<float>(faded - frame) / static_cast<float>(faded);
                to[frame] += step * rest;
            }
        }
    }
    before_ = Before::dry;
}

}  // namespace orvalo
