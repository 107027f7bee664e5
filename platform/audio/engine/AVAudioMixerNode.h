#pragma once

#include "platform/audio/engine/AVAudioNode.h"

namespace orvalo {

/// Adds its inputs, each converted from its own rate and channels to the output's. The engine
/// renders it as the last step of its plan.
class AVAudioMixerNode : public AVAudioNode {
  private:
    friend class AVAudioEngine;

    AVAudioMixerNode() = default;
    Inputs inputs() const override { return Inputs::any; }
};

}  // namespace orvalo
