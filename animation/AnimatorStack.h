#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "animation/AnimatorList.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

class Animator;
class Timer;

/// Runs several animators side by side on one repeating timer. Each tick steps every unfinished
/// member by one frame and removes the members that end. The members' own timers are not used.
///
/// Not thread-safe: use it on one thread with a run loop. Callbacks are called inside animate() and
/// may do anything with the stack and its members, including releasing them.
class AnimatorStack : public NSObject {
  private:
    std::shared_ptr<Timer> _timer;
    AnimatorList _animators;

  public:
    /// The timer's period in seconds, used from the next start() on.
    float interval = 0.005F;
    /// Called before a member is stepped.
    std::function<void(const std::shared_ptr<AnimatorStack>&, const std::shared_ptr<Animator>&)>
        onAnimation;
    /// Called on the first tick without a member to step, before the stack stops.
    std::function<void(const std::shared_ptr<AnimatorStack>&)> onFinished;
    /// Called after a member has ended and is removed.
    std::function<void(const std::shared_ptr<AnimatorStack>&, const std::shared_ptr<Animator>&)>
        onRemovedItem;

    /// Appends the animator, which may be a member already. Null is ignored. An animator added
    /// during a tick is stepped from the next tick on.
    virtual void add(const std::shared_ptr<Animator>& item);
    virtual std::int64_t getCount() const;
    /// A copy of the entries, in the order of their addition.
    virtual std::vector<std::shared_ptr<Animator>> getItems() const;

    /// Starts the timer, which holds the stack until stop(). A timer that already runs keeps
    /// running beside the new one and can no longer be stopped.
    virtual void start();
    /// Ends the timer and removes all members.
    virtual void stop();
    /// One tick. A member that was finished before the tick is skipped and stays. It is a fatal
    /// error when a member ends on the tick on which a callback has removed it, as stop() does.
    virtual void animate();
    /// What stop() does.
    virtual void reset();
};

}  // namespace orvalo
