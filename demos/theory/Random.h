#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

namespace orvalo {

/// Numbers that are the same on every machine: the standard fixes what std::mt19937 gives, and the
/// ways to a range are this class's own, since those of the standard library differ by vendor.
class Random {
  public:
    explicit Random(std::uint32_t seed);

    /// A whole number in 0 ..< count. Precondition: count > 0.
    int below(int count);
    /// A whole number in low ... high. Precondition: low <= high.
    int between(int low, int high);
    /// True in this many of a hundred cases.
    bool chance(int percent);
    /// One of the values, each as likely. Precondition: values is not empty.
    template <typename Value>
    const Value& pick(std::span<const Value> values) {
        return values[static_cast<std::size_t>(below(static_cast<int>(values.size())))];
    }

  private:
    std::mt19937 engine_;
};

}  // namespace orvalo
