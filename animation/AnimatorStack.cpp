#include "animation/AnimatorStack.h"

#include "animation/Animator.h"
#include "animation/Members.h"
#include "animation/Ticking.h"

namespace orvalo {

void AnimatorStack::add(const std::shared_ptr<Animator>& item) {
    if (item) {
        _animators.append(item);
    }
}

std::int64_t AnimatorStack::getCount() const {
    return _animators.count();
}

std::vector<std::shared_ptr<Animator>> AnimatorStack::getItems() const {
    return _animators.items();
}

void AnimatorStack::start() {
    _timer = startTicking(interval, [self = shared(this)] { self->animate(); });
}

void AnimatorStack::stop() {
    reset();
}

void AnimatorStack::animate() {
    const auto self = shared(this);
    bool isAnyStepped = false;
    _animators.walk([&](const std::shared_ptr<Animator>& item) {
        if (item->isFinished()) {
            return;
        }
        call(onAnimation, self, item);
        item->animate();
        isAnyStepped = true;
        if (item->isFinished()) {
            if (!_animators.removeFirst(item)) {
                failForMissingMember();
            }
            call(onRemovedItem, self, item);
        }
    });
    if (!isAnyStepped) {
        call(onFinished, self);
        stop();
    }
}

void AnimatorStack::reset() {
    const auto self = weak_from_this().lock();
    stopTicking(_timer);
    _animators.removeAll();
}

}  // namespace orvalo
