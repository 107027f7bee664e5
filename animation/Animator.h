#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

#include "animation/EnumEasing.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/Timer.h"

namespace orvalo {

/// Moves one value from a start to an end over a number of frames along a curve, either on its own
/// timer or one frame per animate() call of its owner. Not thread-safe: use it on the thread that
/// calls start(). Callbacks are called inside animate() and may do anything with the animator,
/// including releasing it. Hold it by std::shared_ptr; a running timer holds it, too.
class Animator : public NSObject {
  public:
    /// The number of live animators in the process. Any thread.
    static std::atomic<std::int64_t> classCount;

  private:
    friend class AnimationSequencer;
    using Curve = float (Animator::*)(std::int64_t, float, float, std::int64_t);

    std::int64_t _startFrame =
        0;  ///< The frame at which a sequencer starts it; only the sequencer uses it.
    std::int64_t _frameCount = 0;  ///< As given to setup().
    std::shared_ptr<Timer> _timer;
    float _source = 0;
    float _value = 0;
    float _destination = 0;
    float _amount = 0;          ///< _destination - _source.
    std::int64_t _frames = -1;  ///< The run's length; negative when there is no run.
    std::int64_t _step = 0;     ///< Frames computed in this run.
    float _interval = 0.005f;
    Curve _action;
    EnumEasing _type = EnumEasing::EASING_easeNone;

  public:
    /// Whether the run reverses at each end instead of finishing. stop() clears it.
    bool looped = false;
    /// Called before each frame is computed, with the previous value.
    std::function<void(const std::shared_ptr<Animator>&, float)> onAnimation;
    /// Called when a run that is not looped has ended, with the end value. May start the next run.
    std::function<void(const std::shared_ptr<Animator>&, float)> onFinished;
    /// Called at each end of a looped run, before it reverses.
    std::function<void(const std::shared_ptr<Animator>&)> onLoop;

    /// Finished, with all values 0. Fatal error when classCount overflows.
    Animator();
    /// Default construction, then Animator::setup(), not an override of it.
    Animator(float sourceValue, float destinationValue, std::int64_t frames,
             float interval = 0.009f, EnumEasing type = EnumEasing::EASING_easeNone);
    ~Animator() override;

    /// Curves that a subclass may override; the Out-In curves call the overrides. The arguments are
    /// those of EasingCurve.
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

    /// Prepares a run and sets the value to its start. frames: 0 when negative, or when source and
    /// destination are equal. interval: seconds between frames, used from the next start() on.
    /// type: an invalid value is a fatal error. The callbacks, looped and a running timer are
    /// unchanged.
    virtual void setup(float source, float destination, std::int64_t frames,
                       float interval = 0.009f, EnumEasing type = EnumEasing::EASING_easeNone);
    /// Prepares the run back to the source, with the same frames, interval and curve.
    virtual void reverse();
    /// Ends the run at once at its destination, as a run of one frame of easeNone.
    virtual void undo();
    virtual float getDestinationValue() const;
    virtual float getSourceValue() const;
    virtual float getValue() const;
    /// Computes the next frame. A run of N frames takes N + 1 calls; the last call sets the end
    /// value and ends or reverses the run. Does nothing when there is no run.
    virtual void animate();
    /// True when the run has ended or setup() was never called.
    virtual bool isFinished() const;
    /// Calls animate() every interval on the calling thread's run loop, until stop(). A timer that
    /// already runs is not stopped and can no longer be stopped.
    virtual void start();
    /// Ends the run and the timer of the last start(), without a callback. Keeps the value.
    virtual void stop();
    /// Prepares the same run again, with an interval of 0.009 s and easeNone.
    virtual void rewind();
    /// Uses another curve from the next frame on.
    virtual void setType(EnumEasing type);
    /// Seconds between frames, used from the next start() on.
    virtual void setInterval(float interval);

  private:
    virtual void reset();

    struct Curves;
    /// The curves that a subclass cannot override.
    template <EnumEasing type>
    float fixed(std::int64_t currentFrame, float sourceValue, float amount, std::int64_t numFrames);
    void bind(EnumEasing type);
};

}  // namespace orvalo
