#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace orvalo::bench {

using QtCurve = std::function<void(const std::vector<double>& shares, std::vector<double>& values)>;

/// Qt's curve of a number in EnumEasing, which makes of shares of the way, 0 to 1, as many values;
/// nothing where the benchmark was built without Qt.
std::optional<QtCurve> qtCurve(std::size_t number);

}  // namespace orvalo::bench
