#include "effect/ui/model/Layout.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace orvalo::effect::ui {

namespace {

/// The arrangement of the parts, chosen by the window's proportions.
enum class Shape : std::uint8_t { standard, wide, tall };

struct Slot {
    Section section;
    int columns;
};
using Row = std::vector<Slot>;

constexpr double wideFrom = 2.1;
constexpr double tallBelow = 0.9;

Shape shapeOf(double width, double height) {
    if (width > wideFrom * height) {
        return Shape::wide;
    }
    return width < tallBelow * height ? Shape::tall : Shape::standard;
}

std::vector<Row> rowsOf(Shape shape) {
    if (shape == Shape::tall) {
        return {{{Section::compressor, 5}},
                {{Section::level, 3}, {Section::ducking, 2}},
                {{Section::trigger, 3}, {Section::meters, 2}}};
    }
    return {{{Section::compressor, 5}, {Section::level, 3}},
            {{Section::ducking, 2}, {Section::trigger, 3}, {Section::meters, 3}}};
}

std::vector<Parameter> parametersOf(Section section) {
    switch (section) {
        case Section::compressor:
            return {Parameter::threshold, Parameter::ratio, Parameter::knee, Parameter::attack,
                    Parameter::release};
        case Section::level:
            return {Parameter::makeup, Parameter::mix, Parameter::output};
        case Section::ducking:
            return {Parameter::duckDepth, Parameter::duckRelease};
        case Section::trigger:
            return {Parameter::triggerLevel, Parameter::triggerNote, Parameter::midiChannel};
        case Section::meters:
            break;
    }
    return {};
}

Rect sharp(const Rect& rect) {
    return rect.sharp();
}

/// The unit for a window of `share` times the natural size.
double unitFor(double share, double scale) {
    constexpr double natural = 8.0;
    constexpr double growth = 0.75;
    return natural * scale * std::pow(std::max(share, 0.05) / scale, growth);
}

}  // namespace

class Layout::Arrangement {
  public:
    Arrangement(Layout& layout, Shape shape) : layout_(layout), unit_(layout.unit), shape_(shape) {}

    void arrange() {
        const double margin = unit_;
        const Rect inner = layout_.whole().inset(margin, margin);
        const double headerHeight = (shape_ == Shape::tall ? 7.5 : 4.0) * unit_;
        placeHeader({inner.x, inner.y - 0.5 * unit_, inner.width, headerHeight});
        const double top = layout_.header.bottom() + 0.5 * unit_;
        const Rect body{inner.x, top, inner.width, std::max(0.0, inner.bottom() - top)};
        if (shape_ == Shape::wide) {
            const double left = std::round(0.42 * body.width);
            placeGraphs({body.x, body.y, left, body.height});
            placeRows({body.x + left + unit_, body.y, std::max(0.0, body.width - left - unit_),
                       body.height});
            return;
        }
        const auto count = static_cast<double>(rowsOf(shape_).size());
        const double gaps = (count - 1.0) * unit_;
        const double row =
            std::max(13.5 * unit_, (shape_ == Shape::tall ? 0.15 : 0.2) * layout_.height);
        const double rows = std::min(count * row + gaps, 0.7 * body.height);
        const double graphs = std::max(0.0, body.height - rows - unit_);
        placeGraphs({body.x, body.y, body.width, graphs});
        placeRows({body.x, body.y + graphs + unit_, body.width, rows});
    }

  private:
    /// From the left: the mark, undo and redo, the presets, the comparison, the switch. A tall
    /// window has the presets in a row of their own.
    void placeHeader(const Rect& area) {
        layout_.header = sharp(area);
        const bool isTall = shape_ == Shape::tall;
        const double high = 3.0 * unit_;
        const double y = isTall ? area.y + 0.5 * unit_ : area.centerY() - 0.5 * high;
        const double button = 3.0 * unit_;
        const double gap = 0.5 * unit_;
        const double power = 7.5 * unit_;
        const double soundWidth = 5.5 * unit_;
        const double copy = 4.5 * unit_;
        const double mark = 12.0 * unit_;
        const double least = 3.0 * unit_;

        double x = area.right() - power;
        cell(Parameter::enabled).area = sharp({x, y, power, high});
        x -= 2.0 * gap + copy;
        layout_.copySound = sharp({x, y, copy, high});
        x -= gap + soundWidth;
        layout_.sound = sharp({x, y, soundWidth, high});
        const double end = x - 2.0 * gap;

        const double tools = 2.0 * button + gap;
        const double others = 3.0 * (button + gap);
        const double name = 18.0 * unit_;
        const bool hasName =
            area.x + mark + tools + 4.0 * gap + (isTall ? 0.0 : name + others) <= end;
        layout_.wordmark = sharp({area.x, y, hasName ? mark : least, high});
        x = area.x + (hasName ? mark : least) + 2.0 * gap;
        layout_.undo = sharp({x, y, button, high});
        layout_.redo = sharp({x + button + gap, y, button, high});
        x += tools + 2.0 * gap;
        if (isTall) {
            placePresets({area.x, y + high + gap, area.width, high});
            return;
        }
        // Centred between what is at its sides, and not wider than a long name.
        const double wide = std::min(end - x, 30.0 * unit_ + others);
        placePresets({x + 0.5 * (end - x - wide), y, std::max(0.0, wide), high});
    }

    void placePresets(const Rect& area) {
        const double button = 3.0 * unit_;
        const double gap = 0.5 * unit_;
        const double name = std::max(0.0, area.width - 3.0 * (button + gap));
        double x = area.x;
        layout_.previousPreset = sharp({x, area.y, button, area.height});
        x += button + gap;
        layout_.presetName = sharp({x, area.y, name, area.height});
        x += name + gap;
        layout_.nextPreset = sharp({x, area.y, button, area.height});
        x += button + gap;
        layout_.savePreset = sharp({x, area.y, button, area.height});
    }

    void placeGraphs(const Rect& area) {
        constexpr double besideFrom = 1.3;
        const double padWidth = 9.0 * unit_;
        if (area.width >= besideFrom * area.height) {
            const double curveWidth =
                std::round(std::min(area.height, 0.42 * (area.width - padWidth - unit_)));
            layout_.curve = sharp({area.x, area.y, curveWidth, area.height});
            placePages({area.x + curveWidth + unit_, area.y,
                        std::max(0.0, area.width - curveWidth - unit_), area.height},
                       padWidth);
            return;
        }
        const double curveHeight = std::round(std::min(area.width, 0.47 * area.height));
        layout_.curve = sharp({area.x, area.y, area.width, curveHeight});
        placePages({area.x, area.y + curveHeight + unit_, area.width,
                    std::max(0.0, area.height - curveHeight - unit_)},
                   padWidth);
    }

    void placePages(const Rect& area, double padWidth) {
        const double pages = std::max(0.0, area.width - padWidth - unit_);
        layout_.placePage({area.x, area.y, pages, area.height});
        layout_.pad = sharp({area.x + pages + unit_, area.y, padWidth, area.height});
    }

    void placeRows(const Rect& area) {
        const auto rows = rowsOf(shape_);
        const auto count = static_cast<double>(rows.size());
        const double high = std::max(0.0, (area.height - (count - 1.0) * unit_) / count);
        double y = area.y;
        for (const auto& row : rows) {
            placeRow(row, {area.x, y, area.width, high});
            y += high + unit_;
        }
    }

    void placeRow(const Row& row, const Rect& area) {
        int columns = 0;
        for (const auto& slot : row) {
            columns += slot.columns;
        }
        // The gaps are distributed over the columns, so that the columns of all rows line up.
        const double column = (area.width + unit_) / columns;
        double x = area.x;
        for (const auto& slot : row) {
            const double wide = slot.columns * column;
            placePanel(slot.section, sharp({x, area.y, wide - unit_, area.height}));
            x += wide;
        }
    }

    void placePanel(Section section, const Rect& area) {
        auto& panel = layout_.panels[static_cast<std::size_t>(section)];
        panel.area = area;
        const double title = std::min(2.5 * unit_, 0.22 * area.height);
        panel.title = sharp({area.x + unit_, area.y + 0.5 * unit_,
                             std::max(0.0, area.width - 2.0 * unit_), title - 0.5 * unit_});
        const Rect content{area.x, area.y + title, area.width,
                           std::max(0.0, area.height - title - 0.5 * unit_)};
        if (section == Section::meters) {
            placeMeters(content.inset(unit_, 0.25 * unit_));
            return;
        }
        const auto parameters = parametersOf(section);
        const double wide = content.width / static_cast<double>(parameters.size());
        double x = content.x;
        for (const auto parameter : parameters) {
            layout_.placeCell(parameter, sharp({x, content.y, wide, content.height}), wide);
            x += wide;
        }
    }

    void placeMeters(const Rect& area) {
        const double high = area.height / static_cast<double>(meterCount);
        for (std::size_t i = 0; i < meterCount; ++i) {
            layout_.meters[i] =
                sharp({area.x, area.y + static_cast<double>(i) * high, area.width, high});
        }
    }

    Cell& cell(Parameter parameter) { return layout_.cells[static_cast<std::size_t>(parameter)]; }

    Layout& layout_;
    double unit_;
    Shape shape_;
};

void Layout::placeCell(Parameter parameter, const Rect& area, double largestDial) {
    const double line = std::min(1.4 * text, 0.26 * area.height);
    auto& cell = cells[static_cast<std::size_t>(parameter)];
    cell.area = area;
    cell.label = Rect{area.x, area.y, area.width, line}.sharp();
    cell.value = Rect{area.x + 0.25 * unit, area.bottom() - line,
                      std::max(0.0, area.width - 0.5 * unit), line}
                     .sharp();
    const double between = cell.value.y - cell.label.bottom();
    const double size =
        std::max(0.0, std::min({between - 0.5 * unit, 0.8 * area.width, largestDial}));
    cell.dial = {area.centerX() - 0.5 * size,
                 cell.label.bottom() + 0.5 * (between - size) + 0.125 * unit, size, size};
}

Layout Layout::of(double width, double height, double scale, Page page) {
    Layout layout;
    layout.scale = scale;
    layout.page = page;
    layout.width = std::max(1.0, width);
    layout.height = std::max(1.0, height);
    const Shape shape = shapeOf(layout.width, layout.height);
    double acrossNatural = naturalWidth;
    double downNatural = naturalHeight;
    if (shape == Shape::wide) {
        acrossNatural = 1040.0;
        downNatural = 300.0;
    } else if (shape == Shape::tall) {
        acrossNatural = 420.0;
        downNatural = 680.0;
    }
    layout.unit =
        unitFor(std::min(layout.width / acrossNatural, layout.height / downNatural), scale);
    layout.text = std::max(1.5 * layout.unit, leastText * std::min(scale, layout.height / 240.0));
    layout.dragTravel = 25.0 * layout.unit;
    Arrangement(layout, shape).arrange();
    return layout;
}

}  // namespace orvalo::effect::ui
