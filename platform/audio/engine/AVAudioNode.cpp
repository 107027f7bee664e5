#include "platform/audio/engine/AVAudioNode.h"

namespace orvalo {

std::shared_ptr<AVAudioEngine> AVAudioNode::engine() const {
    return engine_.lock();
}

}  // namespace orvalo
