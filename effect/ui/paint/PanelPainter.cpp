#include <algorithm>
#include <array>
#include <cmath>

#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

constexpr std::array<const char*, sectionCount> titles{"COMPRESSOR", "LEVEL", "DUCKING", "TRIGGER",
                                                       "METERS"};

void paintLight(const Brush& brush, const Scene& scene, const Rect& title, const char* name,
                double titleEnd, double brightness) {
    const Layout& layout = scene.layout;
    const double radius = std::max(2.5, 0.45 * layout.unit);
    const double glow = 1.7 * radius;
    const double x = title.right() - glow;
    const double y = title.centerY();
    brush.disc(x, y, radius, theme::track);
    if (brightness > 0.0) {
        brush.disc(x, y, glow, theme::accent.withAlpha(0.25 * brightness));
        brush.disc(x, y, radius, theme::accent.withAlpha(brightness));
    }
    const double end = x - glow - 0.25 * layout.unit;
    const Rect area{titleEnd + 0.5 * layout.unit, title.y,
                    std::max(0.0, end - titleEnd - 0.5 * layout.unit), title.height};
    const TextStyle style{
        .size = smallText(layout, 0.9), .colour = dimTextOf(layout), .align = Align::right};
    const std::string full = std::string("MIDI ") + name;
    brush.fittingText(area, {full.c_str(), name}, style);
}

void paintTruePeak(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const Rect area = truePeakArea(layout);
    const float peak = scene.meterMemory.truePeak();
    const std::string number = levelText(peak);
    const std::string full = "TP " + number + " dB";
    const std::string brief = "TP " + number;
    const Rect ring = area.inset(-0.5 * layout.unit, 0.0);
    brush.fill(ring, theme::panel);
    if (scene.hasVisibleFocus(metersFocus)) {
        brush.strokeRound(ring, 0.5 * cornerRadius(layout), 1.5 * hairline(layout), theme::accent);
    }
    brush.fittingText(area, {full.c_str(), brief.c_str()},
                      {.size = smallText(layout, 0.9),
                       .colour = peak > 0.0F ? theme::signal : dimTextOf(layout),
                       .align = Align::right});
}

}  // namespace

double cornerRadius(const Layout& layout) {
    return std::round(0.6 * layout.unit);
}

double hairline(const Layout& layout) {
    return std::max(1.0, std::round(layout.unit / 8.0));
}

Colour dimTextOf(const Layout& layout) {
    constexpr double small = 10.0;
    return layout.text < small ? theme::text : theme::dimText;
}

double smallText(const Layout& layout, double share) {
    return std::max(share * layout.text, std::min(layout.text, Layout::leastText));
}

bool isEnabled(const Scene& scene) {
    return scene.values.isOn(Parameter::enabled);
}

Colour accentOf(const Scene& scene) {
    return isEnabled(scene) ? theme::accent : theme::inactive;
}

void paintTitle(const Brush& brush, const Scene& scene, Section section, double brightness) {
    const Rect& title = scene.layout.panel(section).title;
    brush.fill(title, theme::panel);
    const TextStyle style{
        .size = smallText(scene.layout, 0.85), .colour = dimTextOf(scene.layout), .bold = true};
    const char* text = titles.at(static_cast<std::size_t>(section));
    brush.text(title, text, style);
    const double end = title.x + brush.textWidth(text, style);
    if (section == Section::ducking) {
        paintLight(brush, scene, title, "in", end, brightness);
    } else if (section == Section::trigger) {
        paintLight(brush, scene, title, "out", end, brightness);
    } else if (section == Section::meters) {
        paintTruePeak(brush, scene);
    }
}

void paintPanel(const Brush& brush, const Scene& scene, Section section) {
    brush.fillRound(scene.layout.panel(section).area, cornerRadius(scene.layout), theme::panel);
}

}  // namespace orvalo::effect::ui
