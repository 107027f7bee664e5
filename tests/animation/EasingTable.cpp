#include "tests/animation/EasingTable.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace orvalo::testing {

namespace {

std::vector<std::string> cells(const std::string& line) {
    std::vector<std::string> result;
    std::istringstream rest(line);
    for (std::string cell; std::getline(rest, cell, '\t');) {
        result.push_back(cell);
    }
    return result;
}

float number(const std::string& cell) {
    return std::strtof(cell.c_str(), nullptr);
}

EasingRow row(const std::vector<std::string>& cells) {
    EasingRow result{.currentFrame = std::stoll(cells.at(1)),
                     .sourceValue = number(cells.at(2)),
                     .amount = number(cells.at(3)),
                     .numFrames = std::stoll(cells.at(4))};
    if (cells.at(5) == "fatal") {
        result.fatalMessage = cells.at(6);
        return result;
    }
    result.value = number(cells.at(5));
    result.lowest = cells.size() == 8 ? number(cells[6]) : result.value;
    result.highest = cells.size() == 8 ? number(cells[7]) : result.value;
    return result;
}

}  // namespace

std::vector<EasingRow> easingRows(const std::string& curve) {
    std::ifstream table(ORVALO_EASING_TABLE);
    std::vector<EasingRow> rows;
    for (std::string line; std::getline(table, line);) {
        if (const auto columns = cells(line); columns.at(0) == curve) {
            rows.push_back(row(columns));
        }
    }
    return rows;
}

}  // namespace orvalo::testing
