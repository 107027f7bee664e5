#include <algorithm>
#include <array>
#include <cmath>

#include "effect/ui/model/ValueText.h"
#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

constexpr double lowestLevel = -60.0;
constexpr double highestLevel = 12.0;
constexpr double deepestReduction = 30.0;

struct Names {
    const char* full;
    const char* brief;
};
constexpr std::array<Names, meterCount> names{
    {{"In", "In"}, {"Out", "Out"}, {"Reduction", "Red."}, {"Ducking", "Duck"}}};

double levelShare(double level) {
    return std::clamp((level - lowestLevel) / (highestLevel - lowestLevel), 0.0, 1.0);
}

std::string reductionText(float reduction) {
    return decimalText(-static_cast<double>(reduction), 1, 1);
}

/// peak: the held one. The end of the bar is a light that shows clipping.
void paintLevelBar(const Brush& brush, const Rect& whole, float level, float peak, bool hasClipped,
                   double line) {
    const double light = 1.25 * whole.height;
    const Rect bar{whole.x, whole.y, std::max(0.0, whole.width - light - line), whole.height};
    brush.fill({bar.right(), whole.y, line, whole.height}, theme::panel);
    if (hasClipped) {
        brush.fill({whole.right() - light, whole.y, light, whole.height}, theme::signal);
    }
    const double end = bar.x + std::round(levelShare(level) * bar.width);
    const double full = bar.x + std::round(levelShare(0.0) * bar.width);
    brush.fill({bar.x, bar.y, std::min(end, full) - bar.x, bar.height}, theme::level);
    if (end > full) {
        brush.fill({full, bar.y, end - full, bar.height}, theme::signal);
    }
    brush.fill({full, bar.y, line, bar.height}, theme::ground);
    if (peak > lowestLevel) {
        const double wide = 2.0 * line;
        const double x = bar.x + std::round(levelShare(peak) * bar.width);
        brush.fill({std::clamp(x - wide, bar.x, bar.right() - wide), bar.y, wide, bar.height},
                   peak > 0.0F ? theme::signal : theme::text);
    }
}

void paintRow(const Brush& brush, const Scene& scene, Meter meter) {
    const Layout& layout = scene.layout;
    const Rect& row = layout.meter(meter);
    const auto& name = names.at(static_cast<std::size_t>(meter));
    const double numbers = 3.4 * layout.text;
    const bool isRoomy = row.width > 16.0 * layout.text;
    const double labels = (isRoomy ? 5.2 : 3.0) * layout.text;
    const TextStyle style{.size = layout.text, .colour = dimTextOf(layout)};
    brush.fittingText({row.x, row.y, labels, row.height}, {name.full, name.brief}, style);

    const double high = std::max(3.0, std::round(0.34 * row.height));
    const Rect bar{row.x + labels + 0.5 * layout.unit, std::round(row.centerY() - 0.5 * high),
                   std::max(0.0, row.width - labels - numbers - layout.unit), high};
    brush.fill(bar, theme::track.withAlpha(0.7));
    std::string text;
    if (meter == Meter::input || meter == Meter::output) {
        const bool isInput = meter == Meter::input;
        const MeterMemory& memory = scene.meterMemory;
        const float level = isInput ? scene.levels.input : scene.levels.output;
        paintLevelBar(brush, bar, level, isInput ? memory.inputPeak() : memory.outputPeak(),
                      isInput ? memory.hasInputClipped() : memory.hasOutputClipped(),
                      hairline(layout));
        text = levelText(level);
    } else {
        const float reduction =
            meter == Meter::reduction ? scene.levels.reduction : scene.levels.ducking;
        const double share = std::clamp(reduction / deepestReduction, 0.0, 1.0);
        const double wide = std::round(share * bar.width);
        // Reduction grows from the right.
        brush.fill({bar.right() - wide, bar.y, wide, bar.height},
                   meter == Meter::reduction ? accentOf(scene) : theme::ducking);
        text = reductionText(reduction);
    }
    brush.text({row.right() - numbers, row.y, numbers, row.height}, text,
               {.size = layout.text, .colour = theme::text, .align = Align::right});
}

}  // namespace

std::string levelText(float level) {
    return level <= Levels::lowest ? "-\u221e" : decimalText(level, 1, 1);
}

void paintMeters(const Brush& brush, const Scene& scene) {
    for (std::size_t i = 0; i < meterCount; ++i) {
        brush.fill(scene.layout.meters[i], theme::panel);
        paintRow(brush, scene, static_cast<Meter>(i));
    }
}

}  // namespace orvalo::effect::ui
