#include "platform/audio/engine/AVAudioSession.h"

#include <mutex>
#include <utility>

#include "platform/foundation/DispatchQueue.h"

namespace orvalo {

namespace {

struct SharedSession {
    std::mutex mutex;
    std::shared_ptr<AVAudioSession> session = std::make_shared<AVAudioSession>();
};

SharedSession& sharedSession() {
    // Never destroyed: threads may still use it while the process ends.
    static auto& instance = *new SharedSession;
    return instance;
}

}  // namespace

std::shared_ptr<AVAudioSession> AVAudioSession::sharedInstance() {
    const std::lock_guard lock(sharedSession().mutex);
    return sharedSession().session;
}

void AVAudioSession::setSharedInstance(std::shared_ptr<AVAudioSession> session) {
    const std::lock_guard lock(sharedSession().mutex);
    sharedSession().session = std::move(session);
}

void AVAudioSession::setCategory(AVAudioSessionCategory /*category*/, AVAudioSessionMode /*mode*/,
                                 AVAudioSessionCategoryOptions /*options*/) {}

void AVAudioSession::setActive(bool /*active*/, AVAudioSessionSetActiveOptions /*options*/) {}

void AVAudioSession::setRouteChangeHandler(std::function<void(bool)> handler) {
    routeChangeHandler_ = std::move(handler);
}

void AVAudioSession::setOutputMissing(bool isMissing) {
    if (isOutputMissing_.exchange(isMissing) == isMissing) {
        return;
    }
    DispatchQueue::main()->async([self = shared(this)] {
        if (self->routeChangeHandler_) {
            self->routeChangeHandler_(self->isOutputMissing_);
        }
    });
}

}  // namespace orvalo
