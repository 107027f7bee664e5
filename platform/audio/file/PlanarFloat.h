#pragma once

#include <cstdint>

#include "platform/audio/signal/AudioBlock.h"

struct AVFrame;

namespace orvalo {

/// Writes frames [from, from + output.frameCount) of a decoded frame to output as floats of full
/// scale ±1. The frame must hold them and output's channels. Returns false for a sample format
/// that is no sound.
bool writePlanarFloat(const AVFrame& frame, std::uint32_t from, const AudioBlock& output);

}  // namespace orvalo
