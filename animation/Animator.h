#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

#include "animation/EnumEasing.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/Timer.h"

namespace orvalo {

/// Moves one value from a start to an end over a number of frames along a curve: on a timer of its
/// own, or a frame at each animate() of its owner. One thread at a time, that of the run loop which
/// start() was called on; callbacks come from inside animate() and may do anything with the
/// animator, or let go of it. Held by std::shared_ptr, by its timer too while that runs.
class Animator : public NSObject {
  public:
    /// How many animators live in the process. Any thread.
    static std::atomic<std::int64_t> classCount;

  private:
    friend class AnimationSequencer;
    using Curve = float (Animator::*)(std::int64_t, float, float, std::int64_t);

    std::int64_t _startFrame = 0;  ///< Where it begins on a sequencer's line; the sequencer's own.
    std::int64_t _frameCount = 0;  ///< As given to setup().
    std::shared_ptr<Timer> _timer;
    float _source = 0;
    float _value = 0;
    float _destination = 0;
    float _amount = 0;          ///< _destination - _source.
    std::int64_t _frames = -1;  ///< The run's length; negative when it has ended or never begun.
    std::int64_t _step = 0;     ///< Frames computed in this run.
    float _interval = 0.005f;
    Curve _action;
    EnumEasing _type = EnumEasing::EASING_easeNone;

  public:
    /// Whether a run that ends turns round, for ever. stop() clears it.
    bool looped = false;
    /// Before each frame is computed, with the value before it.
    std::function<void(const std::shared_ptr<Animator>&, float)> onAnimation;
    /// When a run has ended that is not looped, with the end value; may begin the next run.
    std::function<void(const std::shared_ptr<Animator>&, float)> onFinished;
    /// At each end of a looped run, before it turns.
    std::function<void(const std::shared_ptr<Animator>&)> onLoop;

    /// A finished one, with no way to go. More than 64 bits can count are a fatal error.
    Animator();
    /// The same, then setup(); Animator's own, as always in a constructor.
    Animator(float sourceValue, float destinationValue, std::int64_t frames,
             float interval = 0.009f, EnumEasing type = EnumEasing::EASING_easeNone);
    ~Animator() override;

    /// Curves that a subclass may replace, for itself and for the Out-In curve made of them. Their
    /// arguments are those of EasingCurve.
    virtual float easeInElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                std::int64_t numFrames);
    virtual float easeOutElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                 std::int64_t numFrames);
    virtual float easeInOutElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                   std::int64_t numFrames);
    virtual float easeOutInElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                   std::int64_t numFrames);
    virtual float easeInBack(std::int64_t currentFrame, float sourceValue, float amount,
                             std::int64_t numFrames);
    virtual float easeOutBack(std::int64_t currentFrame, float sourceValue, float amount,
                              std::int64_t numFrames);
    virtual float easeInOutBack(std::int64_t currentFrame, float sourceValue, float amount,
                                std::int64_t numFrames);
    virtual float easeOutInBack(std::int64_t currentFrame, float sourceValue, float amount,
                                std::int64_t numFrames);

    /// Makes a run ready, at its start. frames: a negative count, or no way to go, counts as 0.
    /// interval: seconds between frames, from the next start() on. The callbacks, looped and a
    /// running timer stay as they are. type: one that is no case is a fatal error.
    virtual void setup(float source, float destination, std::int64_t frames,
                       float interval = 0.009f, EnumEasing type = EnumEasing::EASING_easeNone);
    /// Makes the way back ready, with the frames, interval and curve of the way there.
    virtual void reverse();
    /// Ends the run at once where it would have ended, as a run of easeNone.
    virtual void undo();
    virtual float getDestinationValue() const;
    virtual float getSourceValue() const;
    virtual float getValue() const;
    /// The next frame of the run: N frames take N + 1 calls, of which the last sets the end value
    /// and ends or turns the run. Nothing when it has ended.
    virtual void animate();
    /// Whether there is no run: it has ended, or setup() was never called.
    virtual bool isFinished() const;
    /// Calls animate() every interval on the calling thread's run loop, until stop(). A timer that
    /// runs already is not stopped, now or later.
    virtual void start();
    /// Ends the run and the timer of the last start(), without a callback. The value stays.
    virtual void stop();
    /// Makes the same way ready anew, with an interval of 0.009 s and easeNone.
    virtual void rewind();
    /// Goes on with another curve from the next frame on.
    virtual void setType(EnumEasing type);
    /// Seconds between frames, from the next start() on.
    virtual void setInterval(float interval);

  private:
    virtual void reset();

    struct Curves;
    /// The curves that no subclass replaces.
    template <EnumEasing type>
    float fixed(std::int64_t currentFrame, float sourceValue, float amount, std::int64_t numFrames);
    void bind(EnumEasing type);
};

}  // namespace orvalo
