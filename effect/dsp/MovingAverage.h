#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace orvalo::effect {

/// The mean of the last values between 0 and 1. Counts in whole units of 2^-40, so that the sum
/// never drifts; rounds down.
class MovingAverage {
  public:
    /// length: the number of values, from 1 to 2^20.
    explicit MovingAverage(std::uint32_t length) : values_(length) { reset(); }

    /// All last values are 1.
    void reset() {
        std::fill(values_.begin(), values_.end(), one);
        sum_ = one * static_cast<std::int64_t>(values_.size());
    }

    double next(double value) {
        const auto now = static_cast<std::int64_t>(value * static_cast<double>(one));
        sum_ += now - values_[at_];
        values_[at_] = now;
        at_ = at_ + 1 == values_.size() ? 0 : at_ + 1;
        return static_cast<double>(sum_) /
               (static_cast<double>(one) * static_cast<double>(values_.size()));
    }

  private:
    static constexpr std::int64_t one = std::int64_t{1} << 40;

    std::vector<std::int64_t> values_;
    std::int64_t sum_ = 0;
    std::size_t at_ = 0;
};

}  // namespace orvalo::effect
