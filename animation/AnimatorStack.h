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

/// Runs several animators side by side on one repeating timer: every tick steps each of them that
/// has not finished by one frame and drops those that end. Their own timers are not used.
///
/// Used on one thread, which has a run loop; callbacks come on it, from inside animate(), and may
/// do anything with the stack and its members, or let go of them.
class AnimatorStack : public NSObject {
  private:
    std::shared_ptr<Timer> _timer;
    AnimatorList _animators;

  public:
    /// The timer's period in seconds; a running timer keeps the one that it started with.
    float interval = 0.005F;
    /// Comes before a member is stepped.
    std::function<void(const std::shared_ptr<AnimatorStack>&, const std::shared_ptr<Animator>&)>
        onAnimation;
    /// Comes on the first tick that finds no member to step, before the stack stops.
    std::function<void(const std::shared_ptr<AnimatorStack>&)> onFinished;
    /// Comes after a member that has ended is removed.
    std::function<void(const std::shared_ptr<AnimatorStack>&, const std::shared_ptr<Animator>&)>
        onRemovedItem;

    /// Appends the animator, which may be a member already and is then held once more; an absent
    /// one is ignored. During a tick: it is stepped from the next tick on.
    virtual void add(const std::shared_ptr<Animator>& item);
    /// How many entries there are.
    virtual std::int64_t getCount() const;
    /// A copy of the entries, in the order of their addition.
    virtual std::vector<std::shared_ptr<Animator>> getItems() const;

    /// Starts the timer, which holds the stack until it is stopped. A timer that runs already is
    /// not stopped: it goes on beside the new one, and stop() no longer reaches it.
    virtual void start();
    /// Ends the timer and removes all members.
    virtual void stop();
    /// One tick. A member that has finished before its turn is passed over and stays. A member that
    /// ends when it is no longer in the list, as after a stop() from a callback of the same tick,
    /// is a fatal error.
    virtual void animate();
    /// What stop() does.
    virtual void reset();
};

}  // namespace orvalo
