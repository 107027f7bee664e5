#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/foundation/NSObject.h"

namespace orvalo {

class Animator;
class Timer;

/// Runs animators one after the other on one repeating timer: every tick steps the current one, and
/// when that has finished the next one follows, forwards or backwards. In the asynchronous mode
/// every tick starts one animator on its own timer instead, so that they overlap.
///
/// Used on one thread, which has a run loop; callbacks come on it, from inside animate(), and may
/// do anything with the chain and its members, or let go of them.
class AnimatorChain : public NSObject {
  private:
    friend struct AnimatorChainPeer;

    std::shared_ptr<Timer> _timer;
    std::vector<std::shared_ptr<Animator>> _animators;
    std::int64_t _currentIndex = 0;
    std::int64_t _direction = 1;

  public:
    /// The timer's period in seconds; a running timer keeps the one that it started with.
    float interval = 0.005F;
    /// Whether members are started on their own timers instead of being stepped. They go on when
    /// the chain stops.
    bool async = false;
    /// Comes once a tick, before the current member is stepped or started.
    std::function<void(const std::shared_ptr<AnimatorChain>&, const std::shared_ptr<Animator>&)>
        onAnimation;
    /// Comes when the chain has come to its end, before it stops.
    std::function<void(const std::shared_ptr<AnimatorChain>&)> onFinished;

    /// Appends the animator, which may be a member already; an absent one is ignored.
    virtual void add(const std::shared_ptr<Animator>& item);
    /// Removes the first entry of the animator and leaves the index alone; an absent one is
    /// ignored, one that is no member is a fatal error.
    virtual void remove(const std::shared_ptr<Animator>& item);
    /// Stops, then removes all members.
    virtual void removeAll();
    /// How many entries there are.
    virtual std::int64_t getCount() const;
    /// The position of the member that the next tick works on, unless it lies outside the list.
    virtual std::int64_t getCurrentIndex() const;
    /// The member there, or none.
    virtual std::shared_ptr<Animator> getCurrentItem() const;

    /// Starts the timer, which holds the chain until it is stopped, and goes on at the current
    /// index. A timer that runs already is not stopped: it goes on beside the new one, and stop()
    /// no longer reaches it.
    virtual void start();
    /// Ends the timer and goes back to index 0.
    virtual void stop();
    /// Turns the direction and leaves the index alone. Backwards, the chain ends as soon as the
    /// index comes down to 0: the member there is not run, unless the chain stands there already,
    /// in which case one tick steps it once and ends.
    virtual void setBackwards(bool direction);
    /// One tick. Without members it prints a warning, and the timer goes on.
    virtual void animate();

  private:
    virtual void reset();
};

}  // namespace orvalo
