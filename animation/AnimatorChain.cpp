#include "animation/AnimatorChain.h"

#include <iterator>

#include "animation/Members.h"
#include "animation/Ticking.h"
#include "platform/foundation/Checked.h"

namespace orvalo {

void AnimatorChain::add(const std::shared_ptr<Animator>& item) {
    if (item) {
        _animators.push_back(item);
    }
}

void AnimatorChain::remove(const std::shared_ptr<Animator>& item) {
    if (item) {
        removeMember(_animators, item);
    }
}

void AnimatorChain::removeAll() {
    const auto self = weak_from_this().lock();
    stop();
    removeAllMembers(_animators);
}

std::int64_t AnimatorChain::getCount() const {
    return std::ssize(_animators);
}

std::int64_t AnimatorChain::getCurrentIndex() const {
    return _currentIndex;
}

std::shared_ptr<Animator> AnimatorChain::getCurrentItem() const {
    return 0 <= _currentIndex && _currentIndex < std::ssize(_animators)
               ? _animators[static_cast<std::size_t>(_currentIndex)]
               : nullptr;
}

void AnimatorChain::start() {
    _timer = startTicking(interval, [self = shared(this)] { self->animate(); });
}

void AnimatorChain::stop() {
    reset();
}

void AnimatorChain::setBackwards(bool direction) {
    _direction = direction ? -1 : 1;
}

void AnimatorChain::animate() {
    if (_animators.empty()) {
        warnOfNoMembers();
        return;
    }
    const auto self = shared(this);
    const auto last = std::ssize(_animators) - 1;
    if (_currentIndex < 0 || _currentIndex > last) {
        _currentIndex = last;
    }
    const auto item = _animators[static_cast<std::size_t>(_currentIndex)];
    call(onAnimation, self, item);
    bool isDone = true;
    if (async) {
        item->start();
    } else {
        item->animate();
        isDone = item->isFinished();
    }
    if (isDone) {
        _currentIndex = checkedAdd(_currentIndex, _direction);
    }
    if (_direction > 0 && _currentIndex >= std::ssize(_animators)) {
        call(onFinished, self);
        stop();
    }
    // Again, because the callback may have turned the chain round.
    if (_direction < 0 && _currentIndex <= 0) {
        call(onFinished, self);
        stop();
    }
}

void AnimatorChain::reset() {
    const auto self = weak_from_this().lock();
    stopTicking(_timer);
    _currentIndex = 0;
}

}  // namespace orvalo
