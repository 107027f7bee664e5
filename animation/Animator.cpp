#include "animation/Animator.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>

#include "animation/EasingCurve.h"
#include "animation/Ticking.h"
#include "platform/foundation/Checked.h"
#include "platform/foundation/FatalError.h"

namespace orvalo {

std::atomic<std::int64_t> Animator::classCount = 0;

template <EnumEasing type>
float Animator::fixed(std::int64_t currentFrame, float sourceValue, float amount,
                      std::int64_t numFrames) {
    return std::get<rawValue(type)>(easingCurves)(currentFrame, sourceValue, amount, numFrames);
}

struct Animator::Curves {
    static constexpr std::array overridable{
        &Animator::easeInElastic,    &Animator::easeOutElastic, &Animator::easeInOutElastic,
        &Animator::easeOutInElastic, &Animator::easeInBack,     &Animator::easeOutBack,
        &Animator::easeInOutBack,    &Animator::easeOutInBack};

    /// The curve of each case, including the end marker.
    template <std::size_t... place>
    static constexpr auto all(std::index_sequence<place...> /*places*/) {
        std::array curves{&Animator::fixed<static_cast<EnumEasing>(place)>...,
                          &Animator::fixed<EnumEasing::EASING_easeNone>};
        std::copy(overridable.begin(), overridable.end(),
                  curves.begin() + rawValue(EnumEasing::EASING_easeInElastic));
        return curves;
    }
};

Animator::Animator() : _action(&Animator::fixed<EnumEasing::EASING_easeNone>) {
    checkedAdd<std::int64_t>(classCount.fetch_add(1), 1);
}

Animator::Animator(float sourceValue, float destinationValue, std::int64_t frames, float interval,
                   EnumEasing type)
    : Animator() {
    Animator::setup(sourceValue, destinationValue, frames, interval, type);
}

Animator::~Animator() {
    checkedSubtract<std::int64_t>(classCount.fetch_sub(1), 1);
}

float Animator::easeInElastic(std::int64_t currentFrame, float sourceValue, float amount,
                              std::int64_t numFrames) {
    return fixed<EnumEasing::EASING_easeInElastic>(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeOutElastic(std::int64_t currentFrame, float sourceValue, float amount,
                               std::int64_t numFrames) {
    return fixed<EnumEasing::EASING_easeOutElastic>(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeInOutElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                 std::int64_t numFrames) {
    return fixed<EnumEasing::EASING_easeInOutElastic>(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeOutInElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                 std::int64_t numFrames) {
    return outIn([this](auto... at) { return easeOutElastic(at...); },
                 [this](auto... at) { return easeInElastic(at...); }, currentFrame, sourceValue,
                 amount, numFrames);
}

float Animator::easeInBack(std::int64_t currentFrame, float sourceValue, float amount,
                           std::int64_t numFrames) {
    return fixed<EnumEasing::EASING_easeInBack>(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeOutBack(std::int64_t currentFrame, float sourceValue, float amount,
                            std::int64_t numFrames) {
    return fixed<EnumEasing::EASING_easeOutBack>(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeInOutBack(std::int64_t currentFrame, float sourceValue, float amount,
                              std::int64_t numFrames) {
    return fixed<EnumEasing::EASING_easeInOutBack>(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeOutInBack(std::int64_t currentFrame, float sourceValue, float amount,
                              std::int64_t numFrames) {
    return outIn([this](auto... at) { return easeOutBack(at...); },
                 [this](auto... at) { return easeInBack(at...); }, currentFrame, sourceValue,
                 amount, numFrames);
}

void Animator::setup(float source, float destination, std::int64_t frames, float interval,
                     EnumEasing type) {
    _source = source;
    _destination = destination;
    _value = _source;
    _amount = _destination - _source;
    _frames = frames;
    _frameCount = _frames;
    _step = 0;
    _interval = interval;
    bind(type);
    if (_frames < 0 || _amount == 0) {
        _frames = 0;
    }
}

void Animator::reverse() {
    setup(_destination, _source, _frames, _interval, _type);
}

void Animator::undo() {
    const auto self = shared(this);
    _frames = 1;
    _step = 0;
    setup(_source, _destination, 1);
    animate();
    animate();
}

float Animator::getDestinationValue() const {
    return _destination;
}

float Animator::getSourceValue() const {
    return _source;
}

float Animator::getValue() const {
    return _value;
}

void Animator::animate() {
    if (_frames < 0) {
        return;
    }
    if (_step < _frames) {
        // Only a callback can release the animator.
        const auto self = onAnimation ? shared(this) : nullptr;
        call(onAnimation, self, _value);
        _step = checkedAdd<std::int64_t>(_step, 1);
        if (_action == nullptr) {
            fatalError("Unexpectedly found nil while implicitly unwrapping an Optional value");
        }
        _value = (this->*_action)(_step, _source, _amount, _frames);
        return;
    }
    const auto self = shared(this);
    _value = _destination;
    if (looped) {
        call(onLoop, self);
        reverse();
    } else {
        stop();
        call(onFinished, self, _value);
    }
}

bool Animator::isFinished() const {
    return _frames < 0;
}

void Animator::start() {
    _timer = startTicking(_interval, [self = shared(this)] { self->animate(); });
}

void Animator::stop() {
    // The timer may hold the last reference.
    const auto self = weak_from_this().lock();
    stopTicking(_timer);
    Animator::reset();
}

void Animator::rewind() {
    setup(_source, _destination, _frameCount);
}

void Animator::setType(EnumEasing type) {
    bind(type);
}

void Animator::setInterval(float interval) {
    _interval = interval;
}

void Animator::reset() {
    _step = 0;
    _frames = -1;
    looped = false;
}

void Animator::bind(EnumEasing type) {
    static constexpr auto curves = Curves::all(std::make_index_sequence<easingCount>());
    if (!enumEasing(rawValue(type))) {
        fatalError("There is no easing curve " + std::to_string(rawValue(type)) + ".");
    }
    _type = type;
    _action = curves.at(static_cast<std::size_t>(rawValue(type)));
}

}  // namespace orvalo
