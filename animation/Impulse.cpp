#include "animation/Impulse.h"

#include <algorithm>
#include <cmath>

#include "animation/Ticking.h"
#include "platform/foundation/Checked.h"

namespace orvalo {

Impulse::Impulse() {
    Impulse::reset();
}

Impulse::Impulse(std::int64_t frames, float amount, float interval, float intensity) : Impulse() {
    Impulse::setup(frames, amount, interval, intensity);
}

void Impulse::setup(std::int64_t frames, float amount, float interval, float intensity) {
    _frames = std::max(frames, std::int64_t{0});
    _step = 0;
    _source = amount;
    _amount = amount;
    _intensity = intensity;
    _interval = interval;
}

void Impulse::setMinMax(bool enabled, float min, float max) {
    _collision = enabled;
    _minVal = min;
    _maxVal = max;
}

void Impulse::start() {
    _timer = startTicking(_interval, [self = shared(this)] { self->animate(); });
}

void Impulse::stop() {
    const auto self = weak_from_this().lock();
    stopTicking(_timer);
    reset();
}

void Impulse::animate() {
    const auto self = shared(this);
    _amount = _amount * _intensity;
    if (std::abs(_amount) < _threshold) {
        _amount = 0.0F;
        call(onFinished, self);
        stop();
        return;
    }
    _step = checkedAdd(_step, std::int64_t{1});
    _value = _value + _amount;
    if (_collision && (_value <= _minVal || _value >= _maxVal)) {
        _amount = -_amount;
        _value = _value + _amount;
        call(onCollision, self);
    }
    call(onAnimation, self);
}

bool Impulse::isFinished() const {
    return _frames < 0;
}

float Impulse::getSourceValue() const {
    return _source;
}

void Impulse::reset() {
    _frames = -1;
    _step = 0;
    _amount = 0.0F;
    _value = 0.0F;
}

}  // namespace orvalo
