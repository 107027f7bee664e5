#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/foundation/NSObject.h"

namespace orvalo {

class Timer;

/// Moves a value by a push that dies away: on every tick of its timer the step is damped and added
/// to the value, until it is too small. Between bounds the step turns round where the value reaches
/// one.
///
/// Used on one thread, which has a run loop; callbacks come on it, from inside animate(), and may
/// do anything with the impulse, or let go of it.
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
    /// Comes once a tick that moves the value, behind the collision's callback of the same tick.
    std::function<void(const std::shared_ptr<Impulse>&)> onAnimation;
    /// Comes when the push has died away, before the impulse stops.
    std::function<void(const std::shared_ptr<Impulse>&)> onFinished;
    /// Comes when the value has reached a bound, behind the turn.
    std::function<void(const std::shared_ptr<Impulse>&)> onCollision;

    Impulse();
    /// What setup() takes.
    explicit Impulse(std::int64_t frames, float amount, float interval = 0.009F,
                     float intensity = 0.75F);

    /// Readies a push from where the value is. frames: no more than a mark that the impulse has not
    /// finished, negative ones count as 0; amount: the step before the first damping; interval: the
    /// timer's period in seconds, from the next start() on; intensity: the factor of the damping.
    /// At 1 or more a push never dies away.
    virtual void setup(std::int64_t frames, float amount, float interval = 0.009F,
                       float intensity = 0.75F);
    /// Sets whether there are bounds, and where; they are inclusive. Taken as they are: with min
    /// above max every move is a collision.
    virtual void setMinMax(bool enabled, float min, float max);
    /// Starts the timer, which holds the impulse until it is stopped. A timer that runs already is
    /// not stopped: it goes on beside the new one, and stop() no longer reaches it.
    virtual void start();
    /// Ends the timer, the push and the movement: the value is 0 again. No callback comes.
    virtual void stop();
    /// One tick.
    virtual void animate();
    /// Whether there is nothing set up.
    virtual bool isFinished() const;
    /// The amount given to setup(), also after the end.
    virtual float getSourceValue() const;

  protected:
    /// Forgets the push and sets the value to 0; the source, the intensity, the interval, the
    /// bounds and the callbacks stay.
    virtual void reset();
};

}  // namespace orvalo
