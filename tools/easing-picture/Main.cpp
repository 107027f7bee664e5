// Writes the picture of all easing curves to standard output, as SVG.

#include <algorithm>
#include <array>
#include <cstddef>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string_view>
#include <vector>

#include "animation/EasingCurve.h"
#include "tools/easing-picture/Plot.h"

namespace {

using namespace orvalo;
using orvalo::picture::Plot;

constexpr double margin = 36;
constexpr double gap = 44;
constexpr double rowGap = 28;
constexpr double titleHeight = 26;
constexpr double headHeight = 96;
constexpr std::size_t columns = 4;
constexpr double sheetWidth = 2 * margin + columns * Plot::width + (columns - 1) * gap;

constexpr std::string_view style = R"(<style>
.sheet { fill: #fbfaf8; }
text { font-family: "Cantarell", "DejaVu Sans", sans-serif; fill: #2c3138; }
.head { font-size: 24px; font-weight: bold; }
.column { font-size: 15px; font-weight: bold; }
.title { font-size: 14px; }
.note { font-size: 13px; fill: #626a75; }
.level { stroke: #b4b8bf; stroke-width: 1; stroke-dasharray: 3 3; fill: none; }
.rule { stroke: #dcdcd8; stroke-width: 1; }
.curve { stroke: #1c6fb5; stroke-width: 2; stroke-linejoin: round; fill: none; }
.leap { stroke: #1c6fb5; stroke-width: 1.2; stroke-dasharray: 1.5 3; fill: none; }
.start { fill: #fbfaf8; stroke: #1c6fb5; stroke-width: 1.8; }
.end { fill: #d2552d; }
@media (prefers-color-scheme: dark) {
.sheet { fill: #1f2329; }
text { fill: #e6e8eb; }
.note { fill: #a3abb6; }
.level { stroke: #5b636e; }
.rule { stroke: #3a4048; }
.curve, .leap, .start { stroke: #6cb6f2; }
.start { fill: #1f2329; }
.end { fill: #f08a63; }
}
</style>
)";

double left(std::size_t column) {
    return margin + static_cast<double>(column) * (Plot::width + gap);
}

void writeText(std::ostream& svg, std::string_view kind, double x, double y,
               std::string_view text) {
    svg << "<text class='" << kind << "' x='" << x << "' y='" << y << "'>" << text << "</text>\n";
}

/// Draws curves side by side, each with the height that the largest of them needs. Returns the
/// bottom of the row.
double drawRow(std::ostream& svg, double top, std::size_t first, std::size_t count) {
    std::vector<Plot> plots;
    double lowest = 0;
    double highest = 1;
    for (std::size_t number = first; number < first + count; ++number) {
        plots.emplace_back(number);
        lowest = std::min(lowest, plots.back().lowest());
        highest = std::max(highest, plots.back().highest());
    }
    const double ground = top + titleHeight + highest * Plot::way;
    for (std::size_t column = 0; column < count; ++column) {
        const auto type = static_cast<EnumEasing>(first + column);
        writeText(svg, "title", left(column), top + 12, easingName(type));
        plots[column].draw(svg, left(column), ground);
    }
    return ground - lowest * Plot::way;
}

/// The meaning of the marks, beside the one curve without a family.
void drawLegend(std::ostream& svg, double top) {
    const double x = left(1);
    double y = top + titleHeight + 10;
    for (const auto* const line :
         {"Left to right: the frames of a run. Bottom to top: the value.",
          "Dashed: the start and the end value, equally far apart in every picture.",
          "Ring: the curve at frame 0. Dot: the curve at the last frame.",
          "Dotted: a leap from one frame to the next."}) {
        writeText(svg, "note", x, y, line);
        y += 20;
    }
}

void drawColumnHeads(std::ostream& svg, double y) {
    constexpr std::array<std::string_view, columns> names{"In", "Out", "In-Out", "Out-In"};
    for (std::size_t column = 0; column < columns; ++column) {
        writeText(svg, "column", left(column), y, names.at(column));
    }
}

double drawRows(std::ostream& svg) {
    drawLegend(svg, headHeight);
    double bottom = drawRow(svg, headHeight, 0, 1) + gap;
    drawColumnHeads(svg, bottom);
    for (std::size_t first = 1; first < easingCount; first += columns) {
        svg << "<path class='rule' d='M" << margin << ' ' << bottom + rowGap / 2 << 'H'
            << sheetWidth - margin << "'/>\n";
        bottom = drawRow(svg, bottom + rowGap, first, columns);
    }
    return bottom + margin;
}

}  // namespace

int main() {
    std::ostringstream rows;
    rows << std::fixed << std::setprecision(2);
    const double height = drawRows(rows);
    std::cout << std::fixed << std::setprecision(2)
              << "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 " << sheetWidth << ' '
              << height << "' width='" << sheetWidth << "' height='" << height << "'>\n"
              << "<title>The 41 easing curves</title>\n"
              << style << "<rect class='sheet' rx='10' width='" << sheetWidth << "' height='"
              << height << "'/>\n";
    writeText(std::cout, "head", margin, margin + 20, "Easing curves");
    std::cout << rows.str() << "</svg>\n";
    return std::cout.flush() ? 0 : 1;
}
