#pragma once

#include <cstdint>
#include <vector>

#include "platform/audio/unit/AUAudioUnit.h"
#include "tests/testing/WavFile.h"

namespace orvalo::testing {

using Channels = Signal;

/// Renders frameCount frames in blocks of the given lengths, which repeat.
Channels renderBlocks(AUAudioUnit& unit, const Channels& input,
                      const std::vector<std::uint32_t>& blockLengths, std::size_t frameCount);

}  // namespace orvalo::testing
