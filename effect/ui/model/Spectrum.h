#pragma once

#include <algorithm>

#include "effect/dsp/SpectrumBank.h"

namespace orvalo::effect::ui {

/// The spectrum of what the effect's detector hears, as the effect sent it last.
class Spectrum {
  public:
    using Levels = SpectrumBank::Levels;

    /// The time between two requests to the effect, which answers each for a while.
    static constexpr double requestSeconds = 0.25 * SpectrumBank::watchedSeconds;

    Spectrum() { levels_.fill(SpectrumBank::lowest); }

    const Levels& levels() const { return levels_; }

    /// Returns whether anything visible has changed. Levels that are not finite are ignored.
    bool take(const Levels& levels) {
        bool hasChanged = false;
        for (std::size_t i = 0; i < levels.size(); ++i) {
            if (std::isfinite(levels[i]) && std::abs(levels[i] - levels_[i]) >= visible) {
                levels_[i] = levels[i];
                hasChanged = true;
            }
        }
        return hasChanged;
    }

    /// The levels `seconds` later without the effect. Returns whether they have changed.
    bool fall(double seconds) {
        constexpr double perSecond = 60.0;
        Levels fallen = levels_;
        for (float& level : fallen) {
            level = std::max(level - static_cast<float>(perSecond * seconds), SpectrumBank::lowest);
        }
        return take(fallen);
    }

  private:
    static constexpr float visible = 0.02F;

    Levels levels_{};
};

}  // namespace orvalo::effect::ui
