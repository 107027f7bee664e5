#pragma once

#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

/// Maps channels: one channel is repeated to many; many are mixed to one by their mean; otherwise
/// channels map by index and missing ones are silent. Both blocks have the same frame count. Render
/// thread.
void mapChannels(const AudioBlock& input, const AudioBlock& output) noexcept;

}  // namespace orvalo
