#pragma once

#include <cstdint>
#include <vector>

#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo::testing {

/// Audio by channel.
using Channels = std::vector<std::vector<float>>;

/// Reproducible full-scale noise that differs between channels.
Channels noise(std::uint32_t channelCount, std::size_t frameCount);

/// Renders frameCount frames in blocks of the given lengths, which repeat.
Channels renderBlocks(AUAudioUnit& unit, const Channels& input,
                      const std::vector<std::uint32_t>& blockLengths, std::size_t frameCount);

}  // namespace orvalo::testing
