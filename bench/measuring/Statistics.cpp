#include "bench/measuring/Statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace orvalo::bench {

double quantile(std::vector<double> values, double share) {
    const auto last = static_cast<double>(values.size() - 1);
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(std::llround(share * last));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

double median(const std::vector<double>& values) {
    return quantile(values, 0.5);
}

}  // namespace orvalo::bench
