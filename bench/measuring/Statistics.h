#pragma once

#include <vector>

namespace orvalo::bench {

/// The value at a share (0 to 1) of the sorted values; 0.5 is the median. values: not empty.
double quantile(std::vector<double> values, double share);

/// The median. values: not empty.
double median(const std::vector<double>& values);

}  // namespace orvalo::bench
