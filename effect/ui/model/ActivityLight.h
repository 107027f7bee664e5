#pragma once

#include <algorithm>
#include <optional>

namespace orvalo::effect::ui {

/// A light that flashes when a message count changes.
class ActivityLight {
  public:
    static constexpr double fullSeconds = 0.1;
    static constexpr double fadingSeconds = 0.25;

    /// Takes the count at `now`, in seconds. The first call only sets the initial count.
    void update(float count, double now) {
        if (count_ && *count_ != count) {
            flashed_ = now;
        }
        count_ = count;
    }

    void flash(double now) { flashed_ = now; }

    /// 0 (dark) to 1.
    double brightness(double now) const {
        if (!flashed_) {
            return 0.0;
        }
        const double faded = (now - *flashed_ - fullSeconds) / fadingSeconds;
        return std::clamp(1.0 - faded, 0.0, 1.0);
    }

  private:
    std::optional<float> count_;
    std::optional<double> flashed_;
};

/// Flashes on each beat, which it tells by the ducking: that only rises when a beat or a note
/// begins.
class BeatLight {
  public:
    /// Takes the ducking in dB at `now`, in seconds. isOn: whether the effect makes beats.
    void update(float ducking, bool isOn, double now) {
        if (isOn && ducking > ducking_) {
            light_.flash(now);
        }
        ducking_ = ducking;
    }

    /// 0 (dark) to 1.
    double brightness(double now) const { return light_.brightness(now); }

  private:
    ActivityLight light_;
    float ducking_ = 0.0F;
};

}  // namespace orvalo::effect::ui
