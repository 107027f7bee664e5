#pragma once

#include "effect/ui/model/Scene.h"
#include "effect/ui/paint/Brush.h"

namespace orvalo::effect::ui {

// Each draws one part of the scene, from the ground up, within the part's area.

/// The wordmark and the choice of presets.
void paintHeader(const Brush& brush, const Scene& scene);
/// The switch.
void paintSwitch(const Brush& brush, const Scene& scene);
/// A knob with its name and its value.
void paintKnob(const Brush& brush, const Scene& scene, Parameter parameter);
/// The transfer curve with the present level as a dot on its way.
void paintCurve(const Brush& brush, const Scene& scene);
void paintHistory(const Brush& brush, const Scene& scene);
void paintMeters(const Brush& brush, const Scene& scene);
/// A panel with its title. `brightness` of its light from 0 to 1.
void paintPanel(const Brush& brush, const Scene& scene, Section section);
void paintTitle(const Brush& brush, const Scene& scene, Section section, double brightness);
/// The open list of presets.
void paintPresetList(const Brush& brush, const Scene& scene);
/// The value that is being typed, and what is wrong with it.
void paintEntry(const Brush& brush, const Scene& scene);

/// How strongly corners are rounded and how thick lines are, in pixels.
double cornerRadius(const Layout& layout);
double hairline(const Layout& layout);
/// The accent, asleep while the effect is off.
Colour accentOf(const Scene& scene);
bool isEnabled(const Scene& scene);
/// Where a complaint with the scene's layout stands; empty without one.
Rect complaintArea(const Brush& brush, const Scene& scene);

}  // namespace orvalo::effect::ui
