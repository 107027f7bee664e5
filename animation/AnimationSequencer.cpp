#include "animation/AnimationSequencer.h"

#include <algorithm>
#include <iterator>

#include "animation/Animator.h"
#include "animation/Members.h"
#include "animation/Ticking.h"
#include "platform/foundation/Checked.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/Print.h"

namespace orvalo {

void AnimationSequencer::add(const std::shared_ptr<Animator>& item, std::int64_t at) {
    if (!item) {
        print("FEHLER: Das Animator Objekt ist ungültig.");
        return;
    }
    item->_startFrame = at;
    _animators.push_back(item);
    const auto startsSooner = [](const auto& left, const auto& right) {
        return left->_startFrame < right->_startFrame;
    };
    // stable_sort allocates; skip it for animators that are added in order.
    if (!std::is_sorted(_animators.begin(), _animators.end(), startsSooner)) {
        std::stable_sort(_animators.begin(), _animators.end(), startsSooner);
    }
    calculateFrames();
}

void AnimationSequencer::remove(const std::shared_ptr<Animator>& item) {
    const auto self = weak_from_this().lock();
    if (item) {
        removeMember(_animators, item);
    }
    calculateFrames();
}

void AnimationSequencer::removeAll() {
    _maxFrames = 0;
    removeAllMembers(_animators);
}

std::int64_t AnimationSequencer::getCount() const {
    return std::ssize(_animators);
}

std::int64_t AnimationSequencer::getCurrentCount() const {
    return _animatedItems.count();
}

std::int64_t AnimationSequencer::getCurrentFrame() const {
    return _currentFrame;
}

std::int64_t AnimationSequencer::getCurrentIndex() const {
    return _currentIndex;
}

void AnimationSequencer::start() {
    _timer = startTicking(interval, [self = shared(this)] {
        self->_currentFrame = checkedAdd(self->_currentFrame, std::int64_t{1});
        self->animate();
    });
}

void AnimationSequencer::stop() {
    reset();
}

void AnimationSequencer::pause() {
    _suspended = true;
}

void AnimationSequencer::continue_() {
    _suspended = false;
}

void AnimationSequencer::rewind() {
    const auto rewound = _animators;
    for (const auto& animator : rewound) {
        animator->rewind();
    }
}

void AnimationSequencer::seek(std::int64_t to) {
    const auto self = weak_from_this().lock();
    _currentFrame = to;
    _currentIndex = 0;
    if (_currentFrame > _maxFrames) {
        stop();
        return;
    }
    const auto sought = _animators;
    for (const auto& animator : sought) {
        if (animator->_startFrame < _currentFrame) {
            animator->stop();
            _currentIndex = checkedAdd(_currentIndex, std::int64_t{1});
        } else {
            animator->rewind();
        }
    }
}

void AnimationSequencer::animate() {
    if (_suspended) {
        return;
    }
    if (_animators.empty()) {
        warnOfNoMembers();
        return;
    }
    const auto self = shared(this);
    findAnimators();
    _animatedItems.walk([&](const std::shared_ptr<Animator>& animator) {
        call(onAnimation, self, animator);
        animator->animate();
        if (animator->isFinished()) {
            _animatedItems.removeFirst(animator);
        }
    });
    if (_currentFrame >= _maxFrames) {
        call(onFinished, self);
        stop();
    }
}

void AnimationSequencer::findAnimators() {
    if (_currentIndex > std::ssize(_animators)) {
        fatalError("Range requires lowerBound <= upperBound");
    }
    for (auto index = _currentIndex; index < std::ssize(_animators); ++index) {
        const auto& animator = _animators[static_cast<std::size_t>(index)];
        if (!animator) {
            print("ERROR: Animationsobjekt is undefiniert!");
            return;
        }
        if (_currentFrame < animator->_startFrame) {
            continue;
        }
        // A copy: an overridden operation may change the list.
        const auto due = animator;
        if (!due->isFinished()) {
            _currentIndex = index;
            scheduleItem(due);
        }
    }
}

void AnimationSequencer::scheduleItem(const std::shared_ptr<Animator>& item) {
    if (!_animatedItems.contains(item)) {
        _animatedItems.append(item);
    }
}

void AnimationSequencer::calculateFrames() {
    for (const auto& animator : _animators) {
        _maxFrames = std::max(_maxFrames, checkedAdd(animator->_startFrame, animator->_frames));
    }
}

void AnimationSequencer::reset() {
    const auto self = weak_from_this().lock();
    stopTicking(_timer);
    _currentIndex = 0;
    _currentFrame = 0;
}

}  // namespace orvalo
