#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/foundation/NSObject.h"

namespace orvalo {

class Timer;

/// Moves a value by a damped push: each tick of its timer damps the step and adds it to the value,
/// until the step falls below a threshold. With bounds enabled, the step reverses its sign when the
/// value reaches a bound.
///
/// Not thread-safe: use it on one thread with a run loop. Callbacks are called inside animate() and
/// may do anything with the impulse, including releasing it.
class Impulse : public NSObject {
  private:
    friend struct ImpulsePeer;

    std::shared_ptr<Timer> _timer;
    std::int64_t _frames = -1;
    std::int64_t _step = 0;
    float _amount = 0.0F;
    float _value = 0.0F;
    float _source = 0.0F;
    float _intensity = 0.75F;
    float _threshold = 0.001F;
    float _interval = 0.009F;
    float _minVal = -1024.0F;
    float _maxVal = 1024.0F;
    bool _collision = false;

  public:
    /// Called once per tick that moves the value, after onCollision of the same tick.
    std::function<void(const std::shared_ptr<Impulse>&)> onAnimation;
    /// Called when the step is below the threshold, before the impulse stops.
    std::function<void(const std::shared_ptr<Impulse>&)> onFinished;
    /// Called when the value has reached a bound, after the step has been reversed.
    std::function<void(const std::shared_ptr<Impulse>&)> onCollision;

    Impulse();
    explicit Impulse(std::int64_t frames, float amount, float interval = 0.009F,
                     float intensity = 0.75F);

    /// Prepares a push from the current value. frames: only marks the impulse as not finished;
    /// negative counts as 0. amount: the step before the first damping. interval: the timer's
    /// period in seconds, used from the next start() on. intensity: the damping factor; at 1 or
    /// more the push never ends.
    virtual void setup(std::int64_t frames, float amount, float interval = 0.009F,
                       float intensity = 0.75F);
    /// Enables or disables the bounds, which are inclusive. With min above max every move is a
    /// collision.
    virtual void setMinMax(bool enabled, float min, float max);
    /// Starts the timer, which holds the impulse until stop(). A timer that already runs keeps
    /// running beside the new one and can no longer be stopped.
    virtual void start();
    /// Ends the timer and the push, without a callback. Sets the value to 0.
    virtual void stop();
    /// One tick.
    virtual void animate();
    /// True unless a push is set up.
    virtual bool isFinished() const;
    /// The amount given to setup(); kept after the end.
    virtual float getSourceValue() const;

  protected:
    /// Discards the push and sets the value to 0. Keeps the source, intensity, interval, bounds and
    /// callbacks.
    virtual void reset();
};

}  // namespace orvalo
