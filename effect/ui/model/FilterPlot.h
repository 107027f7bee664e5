#pragma once

#include "effect/ui/model/Layout.h"

namespace orvalo::effect::ui {

/// The gain in dB of the side-chain's filters at a frequency in Hz.
double sideChainGain(const ParameterValues& values, double hertz);

/// The plot of the side-chain: frequencies in Hz, on a logarithmic axis, and levels in dB to
/// pixels.
class FilterPlot {
  public:
    static constexpr double lowestHertz = 20.0;
    static constexpr double highestHertz = 20000.0;
    /// In dB.
    static constexpr double lowest = -60.0;
    static constexpr double highest = 6.0;

    explicit FilterPlot(const Rect& area) : area_(area) {}

    const Rect& area() const { return area_; }
    double x(double hertz) const;
    /// Within the area.
    double y(double decibels) const;
    /// The frequency at a share of the width, 0 to 1.
    static double hertzAt(double share);

  private:
    Rect area_;
};

}  // namespace orvalo::effect::ui
