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

/// Plays animators on one time line, each from its own start frame, with one repeating timer. Each
/// tick advances the frame counter, schedules the animators that are due, steps the scheduled ones
/// and removes those that have finished. At the end of the time line it stops. Animators at frames
/// 0 and 1 both start on the first tick.
///
/// Not thread-safe: use it on one thread with a run loop. Callbacks are called inside animate() and
/// may do anything with the sequencer and its animators, including releasing them. An overflow of a
/// frame sum or counter is a fatal error.
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
    /// The timer's period in seconds, used from the next start() on.
    float interval = 0.005F;
    /// Called for each scheduled animator on each tick, before it is stepped.
    std::function<void(const std::shared_ptr<AnimationSequencer>&,
                       const std::shared_ptr<Animator>&)>
        onAnimation;
    /// Called when the frame counter has reached the end of the time line, before the sequencer
    /// stops.
    std::function<void(const std::shared_ptr<AnimationSequencer>&)> onFinished;

    /// Adds the animator at a frame and extends the time line to its end if needed. Animators at
    /// the same frame keep the order of their addition. An animator added twice has two entries,
    /// both at the new frame. For null, prints a line on standard output and adds nothing.
    virtual void add(const std::shared_ptr<Animator>& item, std::int64_t at);
    /// Removes the first entry of the animator; an animator without an entry is a fatal error. Null
    /// removes nothing. The time line keeps its length, and a scheduled animator is stepped until
    /// it finishes.
    virtual void remove(const std::shared_ptr<Animator>& item);
    /// Removes all entries and sets the length to 0. Scheduled animators, counters and the timer
    /// are unchanged.
    virtual void removeAll();
    /// The number of entries on the time line.
    virtual std::int64_t getCount() const;
    /// The number of scheduled animators.
    virtual std::int64_t getCurrentCount() const;
    virtual std::int64_t getCurrentFrame() const;
    /// Index in the order of start frames from which the next tick looks for animators that are
    /// due.
    virtual std::int64_t getCurrentIndex() const;

    /// Starts the timer, which holds the sequencer until stop(), and continues from the current
    /// counters. A timer that already runs keeps running: both advance the frame counter, and
    /// stop() ends only the new one.
    virtual void start();
    /// Ends the timer and sets the counters to 0. Scheduled animators stay scheduled.
    virtual void stop();
    /// animate() does nothing during the pause; the frame counter still advances.
    virtual void pause();
    /// Ends the pause. Animators that became due during it are scheduled on the next tick.
    virtual void continue_();
    /// Rewinds every animator; the sequencer's counters are unchanged.
    virtual void rewind();
    /// Sets the frame counter, stops the animators that start before that frame and rewinds the
    /// others. Stops the sequencer when the frame is beyond the end of the time line. Scheduled
    /// animators stay scheduled.
    virtual void seek(std::int64_t to);
    /// The tick, without advancing the frame counter. Without animators it prints a warning and the
    /// timer keeps running.
    virtual void animate();

  protected:
    /// Schedules the animators from the current index on that are due and not finished. An index
    /// beyond the list is a fatal error.
    virtual void findAnimators();
    /// Adds the animator to the scheduled ones, unless it is scheduled already.
    virtual void scheduleItem(const std::shared_ptr<Animator>& item);
    /// Extends the time line to the last end of an animator. Never shortens it.
    virtual void calculateFrames();
    /// What stop() does.
    virtual void reset();
};

}  // namespace orvalo
