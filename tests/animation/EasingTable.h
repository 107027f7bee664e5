#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvalo::testing {

/// A line of golden/easing.tsv: arguments and result of a curve.
struct EasingRow {
    std::int64_t currentFrame = 0;
    float sourceValue = 0;
    float amount = 0;
    std::int64_t numFrames = 0;
    float lowest = 0;
    float value = 0;
    float highest = 0;
    std::string fatalMessage{};  ///< Set if the curve ends the program.
};

/// All lines of the curve with this name.
std::vector<EasingRow> easingRows(const std::string& curve);

}  // namespace orvalo::testing
