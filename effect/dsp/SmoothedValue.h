#pragma once

#include <cstdint>

namespace orvalo::effect {

/// A parameter that moves to a new value in a straight line over 20 ms, frame by frame, so that a
/// turn of a knob makes no steps. The line does not depend on how the frames are cut into blocks.
class SmoothedValue {
  public:
    explicit SmoothedValue(double sampleRate);

    /// Heads for a value from wherever the line is now; nothing when it already does.
    void setTarget(float target);
    /// Is at a value at once.
    void snapTo(float value);

    bool isMoving() const { return remaining_ != 0; }
    float target() const { return target_; }

    /// The values of the next `count` frames.
    void fill(float* values, std::uint32_t count);

  private:
    float valueWithRemaining(std::uint32_t frames) const;

    std::uint32_t length_;
    std::uint32_t remaining_ = 0;
    float target_ = 0.0F;
    float step_ = 0.0F;
};

}  // namespace orvalo::effect
