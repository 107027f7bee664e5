#pragma once

#include <vector>

#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

/// The areas inside the history's panel.
struct HistoryAreas {
    /// The graph of the levels, and below it the strip of reduction and ducking.
    Rect levels;
    Rect strip;
    Rect legend;
    /// The button that chooses the span.
    Rect span;
};
HistoryAreas historyAreas(const Layout& layout);

/// The lever of a switch on a page.
Rect toggleArea(const Layout& layout, Parameter parameter);

/// The fields of a choice, one for each value; only one, for the chosen value, where the cell has
/// no room for all.
std::vector<Rect> segmentAreas(const Layout& layout, Parameter parameter);

/// The areas inside the pad's panel: the pad itself, and below it the keyboard.
struct PadAreas {
    Rect pad;
    Rect keys;
};
PadAreas padAreas(const Layout& layout);

/// The line of the meters' title in which the true peak is shown.
Rect truePeakArea(const Layout& layout);

/// The plot of the transfer curve: levels in dB to pixels, with the same range on both axes.
class CurvePlot {
  public:
    /// In dB.
    static constexpr float lowest = -60.0F;
    static constexpr float highest = 12.0F;

    explicit CurvePlot(const Layout& layout)
        : area_(layout.curve.inset(0.5 * layout.unit, 0.5 * layout.unit)) {}

    const Rect& area() const { return area_; }
    double x(float level) const { return area_.x + share(level) * area_.width; }
    double y(float level) const { return area_.bottom() - share(level) * area_.height; }
    /// dB per pixel.
    double perPixelAcross() const { return range / area_.width; }
    double perPixelDown() const { return range / area_.height; }

  private:
    static constexpr double range = static_cast<double>(highest) - lowest;

    static double share(float level) { return (static_cast<double>(level) - lowest) / range; }

    Rect area_;
};

/// A point of the curve that can be dragged.
struct CurvePoint {
    double x;
    double y;
};
/// At the threshold; drags it sideways.
CurvePoint thresholdPoint(const Scene& scene);
/// At the input level `ratioPointLevel`; drags the ratio up and down.
CurvePoint ratioPoint(const Scene& scene);
inline constexpr float ratioPointLevel = 6.0F;  // dB
/// The radius within which a press finds a point, in pixels.
double curvePointReach(const Layout& layout);

}  // namespace orvalo::effect::ui
