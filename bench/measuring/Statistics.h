#pragma once

#include <vector>

namespace orvalo::bench {

/// The value below which the share (0 to 1) of the values lies, the nearest one of them; 0.5 is the
/// median. values: not empty.
double quantile(std::vector<double> values, double share);

/// The middle value. values: not empty.
double median(const std::vector<double>& values);

}  // namespace orvalo::bench
