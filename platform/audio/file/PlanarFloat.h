#pragma once

#include <cstdint>

#include "platform/audio/signal/AudioBlock.h"

struct AVFrame;

namespace orvalo {

/// Converts samples [from, from + output.frameCount) of a decoded frame to floats of full scale ±1.
/// The frame must hold these samples and output's channels. Returns false, and writes nothing, for
/// an unknown sample format.
bool writePlanarFloat(const AVFrame& frame, std::uint32_t from, const AudioBlock& output);

}  // namespace orvalo
