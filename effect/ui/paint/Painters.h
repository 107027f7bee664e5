#pragma once

#include "effect/ui/model/Scene.h"
#include "effect/ui/paint/Brush.h"

namespace orvalo::effect::ui {

// Each function draws one part of the scene, background included, within the part's area.

/// The header with all its fields.
void paintHeader(const Brush& brush, const Scene& scene);
/// The Enabled switch.
void paintSwitch(const Brush& brush, const Scene& scene);
/// A control with its name and its value.
void paintControl(const Brush& brush, const Scene& scene, Parameter parameter);
/// The transfer curve, with a dot at the current level.
void paintCurve(const Brush& brush, const Scene& scene);
/// The tabs of the pages. beat: brightness of the light that flashes on each beat.
void paintTabs(const Brush& brush, const Scene& scene, double beat);
/// The picture of the open page.
void paintGraph(const Brush& brush, const Scene& scene, double beat);
/// What the side-chain's filters let through.
void paintFilter(const Brush& brush, const Scene& scene);
/// The ducking that the beats make.
void paintBeats(const Brush& brush, const Scene& scene, double beat);
void paintHistory(const Brush& brush, const Scene& scene);
/// The pad and the keyboard.
void paintPad(const Brush& brush, const Scene& scene);
void paintMeters(const Brush& brush, const Scene& scene);
/// A panel without its title, and the title. brightness: of the title's light, 0 to 1.
void paintPanel(const Brush& brush, const Scene& scene, Section section);
void paintTitle(const Brush& brush, const Scene& scene, Section section, double brightness);
/// The open preset list.
void paintPresetList(const Brush& brush, const Scene& scene);
/// The text field and the line about it.
void paintEntry(const Brush& brush, const Scene& scene);
/// The notice, unless the preset list shows it.
void paintNotice(const Brush& brush, const Scene& scene);
/// The text about the target below the pointer, and its area; empty while it is not shown.
void paintTip(const Brush& brush, const Scene& scene);
Rect tipArea(const Brush& brush, const Scene& scene);

/// The corner radius and the line width, in pixels.
double cornerRadius(const Layout& layout);
double hairline(const Layout& layout);
/// The colour of less important text. Small text is as bright as other text, because its thin
/// strokes lose contrast.
Colour dimTextOf(const Layout& layout);
/// A text size of this share of the layout's, as far as that is legible.
double smallText(const Layout& layout, double share);
/// A level in dB without its unit; a minus sign and the sign of infinity for silence.
std::string levelText(float level);
/// The accent colour, or the inactive one while the effect is bypassed.
Colour accentOf(const Scene& scene);
bool isEnabled(const Scene& scene);
/// The areas of the line about the text field and of the notice; empty without one.
Rect entryLineArea(const Brush& brush, const Scene& scene);
Rect noticeArea(const Brush& brush, const Scene& scene);

}  // namespace orvalo::effect::ui
