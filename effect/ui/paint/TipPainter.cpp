#include <algorithm>
#include <cmath>
#include <sstream>

#include "effect/ui/model/Tip.h"
#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

TextStyle tipStyle(const Scene& scene) {
    return {.size = scene.layout.text, .colour = theme::text};
}

/// The paragraphs, wrapped at spaces.
std::vector<std::string> linesOf(const Brush& brush, const Scene& scene) {
    const TextStyle style = tipStyle(scene);
    const double width =
        std::min(26.0 * scene.layout.text, scene.layout.width - 4.0 * scene.layout.unit);
    std::vector<std::string> lines;
    for (const auto& paragraph : tipFor(scene.hovered)) {
        std::istringstream words(paragraph);
        std::string line;
        std::string word;
        while (words >> word) {
            std::string longer = line;
            longer.append(line.empty() ? "" : " ").append(word);
            if (!line.empty() && brush.textWidth(longer, style) > width) {
                lines.push_back(line);
                line = word;
            } else {
                line = longer;
            }
        }
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

Rect tipArea(const Brush& brush, const Scene& scene) {
    if (!scene.showsTip) {
        return {};
    }
    const Layout& layout = scene.layout;
    const auto lines = linesOf(brush, scene);
    double wide = 0.0;
    for (const auto& line : lines) {
        wide = std::max(wide, brush.textWidth(line, tipStyle(scene)));
    }
    wide = std::min(layout.width, std::ceil(wide) + 2.0 * layout.unit);
    const double high =
        std::round(1.35 * layout.text * static_cast<double>(lines.size()) + 1.2 * layout.unit);
    const double gap = std::round(0.25 * layout.unit);
    const Rect anchor = tipAnchor(scene, scene.hovered);
    const double x = std::clamp(anchor.centerX() - 0.5 * wide, 0.0, layout.width - wide);
    // Below the target, above it, or at its lower edge.
    double y = anchor.bottom() + gap;
    if (y + high > layout.height) {
        y = anchor.y - gap - high;
    }
    if (y < 0.0) {
        y = std::max(0.0, anchor.bottom() - gap - high);
    }
    return {std::round(x), std::round(y), wide, high};
}

void paintTip(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const Rect area = tipArea(brush, scene);
    brush.fillRound(area, 0.5 * cornerRadius(layout), theme::ground);
    brush.strokeRound(area, 0.5 * cornerRadius(layout), hairline(layout), theme::raisedLight);
    const double line = 1.35 * layout.text;
    double y = area.y + 0.6 * layout.unit;
    for (const auto& text : linesOf(brush, scene)) {
        brush.text({area.x + layout.unit, y, area.width - 2.0 * layout.unit + 1.0, line}, text,
                   tipStyle(scene));
        y += line;
    }
}

}  // namespace orvalo::effect::ui
