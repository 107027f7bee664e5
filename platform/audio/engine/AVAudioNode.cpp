#include "platform/audio/engine/AVAudioNode.h"

namespace orvalo {

std::shared_ptr<AVAudioEngine> AVAudioNode::engine() const {
    const std::lock_guard lock(engineMutex_);
    return engine_.lock();
}

void AVAudioNode::setEngine(const std::shared_ptr<AVAudioEngine>& engine) {
    const std::lock_guard lock(engineMutex_);
    engine_ = engine;
}

}  // namespace orvalo
