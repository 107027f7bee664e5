#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/foundation/NSObject.h"

namespace orvalo {

class Animator;
class Timer;

/// Runs animators one after the other on one repeating timer, forwards or backwards: each tick
/// steps the current one, and the next one follows when it has finished. In asynchronous mode each
/// tick starts one animator on its own timer instead, so that they overlap.
///
/// Not thread-safe: use it on one thread with a run loop. Callbacks are called inside animate() and
/// may do anything with the chain and its members, including releasing them.
class AnimatorChain : public NSObject {
  private:
    friend struct AnimatorChainPeer;

    std::shared_ptr<Timer> _timer;
    std::vector<std::shared_ptr<Animator>> _animators;
    std::int64_t _currentIndex = 0;
    std::int64_t _direction = 1;

  public:
    /// The timer's period in seconds, used from the next start() on.
    float interval = 0.005F;
    /// Whether members are started on their own timers instead of being stepped. They keep running
    /// when the chain stops.
    bool async = false;
    /// Called once per tick, before the current member is stepped or started.
    std::function<void(const std::shared_ptr<AnimatorChain>&, const std::shared_ptr<Animator>&)>
        onAnimation;
    /// Called when the chain has reached its end, before it stops.
    std::function<void(const std::shared_ptr<AnimatorChain>&)> onFinished;

    /// Appends the animator, which may be a member already. Null is ignored.
    virtual void add(const std::shared_ptr<Animator>& item);
    /// Removes the first entry of the animator and keeps the index. Null is ignored; an animator
    /// that is not a member is a fatal error.
    virtual void remove(const std::shared_ptr<Animator>& item);
    /// Stops the chain, then removes all members.
    virtual void removeAll();
    virtual std::int64_t getCount() const;
    /// Index of the member that the next tick steps or starts. May lie outside the list.
    virtual std::int64_t getCurrentIndex() const;
    /// The member at the current index, or null.
    virtual std::shared_ptr<Animator> getCurrentItem() const;

    /// Starts the timer, which holds the chain until stop(), and continues at the current index. A
    /// timer that already runs keeps running beside the new one and can no longer be stopped.
    virtual void start();
    /// Ends the timer and sets the index to 0.
    virtual void stop();
    /// Sets the direction and keeps the index. Backwards, the chain ends as soon as the index
    /// reaches 0, without running that member. If the index is 0 already, one tick steps that
    /// member once and ends.
    virtual void setBackwards(bool direction);
    /// One tick. Without members it prints a warning and the timer keeps running.
    virtual void animate();

  private:
    virtual void reset();
};

}  // namespace orvalo
