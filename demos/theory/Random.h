#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

namespace orvalo {

/// Random numbers that are the same on every machine. std::mt19937 is fixed by the standard; the
/// mapping to ranges is done here, because std::uniform_int_distribution differs between libraries.
class Random {
  public:
    explicit Random(std::uint32_t seed);

    /// 0 to count - 1. Precondition: count > 0.
    int below(int count);
    /// low to high. Precondition: low <= high.
    int between(int low, int high);
    /// True with this probability in percent.
    bool chance(int percent);
    /// One of the values, equally likely. Precondition: values is not empty.
    template <typename Value>
    const Value& pick(std::span<const Value> values) {
        return values[static_cast<std::size_t>(below(static_cast<int>(values.size())))];
    }

  private:
    std::mt19937 engine_;
};

}  // namespace orvalo
