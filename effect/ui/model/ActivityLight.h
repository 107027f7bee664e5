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

}  // namespace orvalo::effect::ui
