#include "platform/audio/engine/AVAudioMixerNode.h"

namespace orvalo {

AVAudioFormat AVAudioMixerNode::derivedFormat(const AVAudioFormat* /*input*/,
                                              const AVAudioFormat& engineFormat) const {
    return engineFormat;
}

void AVAudioMixerNode::prepareToRender(const AVAudioFormat* /*input*/,
                                       const AVAudioFormat& /*output*/) {}

}  // namespace orvalo
