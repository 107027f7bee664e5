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

/// Plays animators on one time line of frames, each from a frame of its own, by one repeating
/// timer: every tick advances the frame counter, schedules the animators whose frame has come,
/// steps the scheduled ones and drops those that have finished; at the end of the time line it
/// stops. Frames 0 and 1 both begin on the first tick.
///
/// Used on one thread, which has a run loop; callbacks come on it, from inside animate(), and may
/// do anything with the sequencer and its animators, or let go of them. Frame sums and counters
/// that overflow are fatal errors.
class AnimationSequencer : public NSObject {
  private:
    friend struct AnimationSequencerPeer;

    std::shared_ptr<Timer> _timer;
    std::int64_t _currentFrame = 0;
    std::int64_t _maxFrames = 0;
    std::vector<std::shared_ptr<Animator>> _animators;
    AnimatorList _animatedItems;
    std::int64_t _currentIndex = 0;
    bool _suspended = false;

  public:
    /// The timer's period in seconds; a running timer keeps the one that it started with.
    float interval = 0.005F;
    /// Comes for each scheduled animator on each tick, before that animator steps.
    std::function<void(const std::shared_ptr<AnimationSequencer>&,
                       const std::shared_ptr<Animator>&)>
        onAnimation;
    /// Comes when the frame counter has reached the end of the time line, before the sequencer
    /// stops.
    std::function<void(const std::shared_ptr<AnimationSequencer>&)> onFinished;

    /// Places the animator on the time line, which grows to its end when needed; animators of one
    /// frame keep the order in which they came. One that is there already is there once more, at
    /// the new frame both times. An absent one is refused with a line on standard output.
    virtual void add(const std::shared_ptr<Animator>& item, std::int64_t at);
    /// Removes the first entry of the animator; one that is not there is a fatal error, an absent
    /// one is ignored. The time line keeps its length, and a scheduled animator is stepped until it
    /// finishes.
    virtual void remove(const std::shared_ptr<Animator>& item);
    /// Empties the time line and sets its length to 0. Scheduled animators, counters and the timer
    /// stay.
    virtual void removeAll();
    /// How many entries there are on the time line.
    virtual std::int64_t getCount() const;
    /// How many animators are scheduled.
    virtual std::int64_t getCurrentCount() const;
    /// The frame counter.
    virtual std::int64_t getCurrentFrame() const;
    /// The position, by start frame, at which the next search for animators to schedule begins.
    virtual std::int64_t getCurrentIndex() const;

    /// Starts the timer, which holds the sequencer until it is stopped. The counters go on. A timer
    /// that runs already is not stopped: both advance the frame counter, and stop() reaches the new
    /// one only.
    virtual void start();
    /// Ends the timer and sets the counters to 0; scheduled animators stay scheduled.
    virtual void stop();
    /// Has animate() do nothing; the frame counter goes on.
    virtual void pause();
    /// Ends the pause. What became due meanwhile is scheduled on the next tick.
    virtual void continue_();
    /// Rewinds every animator and nothing of the sequencer itself.
    virtual void rewind();
    /// Sets the frame counter, stops the animators that start before that frame and rewinds the
    /// others. Beyond the end of the time line it stops the sequencer. Scheduled animators stay
    /// scheduled.
    virtual void seek(std::int64_t to);
    /// What a tick does after it has advanced the frame counter. Without animators it prints a
    /// warning, and the timer goes on.
    virtual void animate();

  protected:
    /// Schedules the animators from the current index on that are due and not finished. An index
    /// beyond the list is a fatal error.
    virtual void findAnimators();
    /// Has the animator stepped from now on, unless it is already.
    virtual void scheduleItem(const std::shared_ptr<Animator>& item);
    /// Has the time line grow to the last end of an animator; it never shrinks.
    virtual void calculateFrames();
    /// What stop() does.
    virtual void reset();
};

}  // namespace orvalo
