#pragma once

#include <cstdint>
#include <vector>

namespace orvalo::effect {

/// The smallest of the last values, by the ascending queue of D. Lemire ("Streaming maximum-minimum
/// filter using no more than three comparisons per element", 2006).
class SlidingMinimum {
  public:
    /// length: the number of values, at least 1.
    explicit SlidingMinimum(std::uint32_t length) : length_(length), queue_(length) {}

    void reset() { first_ = size_ = 0; }

    /// Adds a value and returns the smallest of the last `length` ones.
    float next(float value) {
        if (size_ != 0 && now_ - queue_[first_].time >= length_) {
            first_ = after(first_);
            --size_;
        }
        while (size_ != 0 && queue_[last()].value >= value) {
            --size_;
        }
        ++size_;
        queue_[last()] = {.time = now_, .value = value};
        ++now_;
        return queue_[first_].value;
    }

  private:
    struct Entry {
        std::uint32_t time;
        float value;
    };

    std::uint32_t after(std::uint32_t place) const { return place + 1 == length_ ? 0 : place + 1; }
    std::uint32_t last() const {
        const std::uint32_t place = first_ + size_ - 1;
        return place >= length_ ? place - length_ : place;
    }

    std::uint32_t length_;
    std::vector<Entry> queue_;
    std::uint32_t first_ = 0;
    std::uint32_t size_ = 0;
    // Wraps around; only differences count.
    std::uint32_t now_ = 0;
};

}  // namespace orvalo::effect
