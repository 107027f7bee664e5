#pragma once

#include <algorithm>
#include <optional>

namespace orvalo::effect::ui {

/// A light that flashes when a count of messages moves.
class ActivityLight {
  public:
    static constexpr double fullSeconds = 0.1;
    static constexpr double fadingSeconds = 0.25;

    /// Takes the count that holds at `now`, in seconds. The first one only says where it begins.
    void take(float count, double now) {
        if (count_ && *count_ != count) {
            flashed_ = now;
        }
        count_ = count;
    }

    /// From 0, dark, to 1.
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

}  // namespace orvalo::effect::ui
