#include "platform/audio/engine/AVAudioSession.h"

#include <mutex>

namespace orvalo {

namespace {

struct SharedSession {
    std::mutex mutex;
    std::shared_ptr<AVAudioSession> session = std::make_shared<AVAudioSession>();
};

SharedSession& shelf() {
    // Never destroyed: threads may still ask for it while the process ends.
    static auto& instance = *new SharedSession;
    return instance;
}

}  // namespace

std::shared_ptr<AVAudioSession> AVAudioSession::sharedInstance() {
    const std::lock_guard lock(shelf().mutex);
    return shelf().session;
}

void AVAudioSession::setSharedInstance(std::shared_ptr<AVAudioSession> session) {
    const std::lock_guard lock(shelf().mutex);
    shelf().session = std::move(session);
}

void AVAudioSession::setCategory(AVAudioSessionCategory /*category*/, AVAudioSessionMode /*mode*/,
                                 AVAudioSessionCategoryOptions /*options*/) {}

void AVAudioSession::setActive(bool /*active*/, AVAudioSessionSetActiveOptions /*options*/) {}

}  // namespace orvalo
