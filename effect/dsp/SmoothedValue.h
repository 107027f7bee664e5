#pragma once

#include <cstdint>

namespace orvalo::effect {

/// A parameter that ramps linearly to a new value within 20 ms, so that turning a knob makes no
/// steps. The ramp does not depend on how the frames are divided into blocks.
class SmoothedValue {
  public:
    explicit SmoothedValue(double sampleRate);

    /// Starts a ramp from the current value, unless the target is unchanged.
    void setTarget(float target);
    /// Sets the value without a ramp.
    void snapTo(float value);
    /// Calls snapTo() if it shall be there at once, else setTarget().
    void moveTo(float target, bool atOnce);

    bool isMoving() const { return remaining_ != 0; }
    float target() const { return target_; }

    /// Writes the values of the next `count` frames.
    void fill(float* values, std::uint32_t count);

  private:
    float valueWithRemaining(std::uint32_t frames) const;

    std::uint32_t length_;
    std::uint32_t remaining_ = 0;
    float target_ = 0.0F;
    float step_ = 0.0F;
};

}  // namespace orvalo::effect
