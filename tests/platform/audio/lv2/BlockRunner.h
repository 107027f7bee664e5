#pragma once

#include <cstdint>
#include <vector>

#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo::testing {

/// Audio by channel.
using Channels = std::vector<std::vector<float>>;

/// Full-scale noise that is the same every time and differs between channels.
Channels noise(std::uint32_t channelCount, std::size_t frameCount);

/// Renders a unit in blocks of the given lengths, over and over, until all the input is through.
Channels renderBlocks(AUAudioUnit& unit, const Channels& input,
                      const std::vector<std::uint32_t>& blockLengths, std::size_t frameCount);

}  // namespace orvalo::testing
