#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvalo::bench {

/// What each quantum cost: the whole render call, and the effect's run() within it. Written by the
/// render thread without allocating, read when that has ended.
class QuantumTimes {
  public:
    explicit QuantumTimes(std::size_t capacity) : quanta_(capacity) {}

    /// Render thread. Times in ns of passing time. What exceeds the capacity is forgotten.
    void add(std::int64_t whole, std::int64_t effect, std::uint32_t frames) noexcept {
        if (count_ < quanta_.size()) {
            quanta_[count_++] = {whole, effect, frames};
        }
    }

    std::size_t count() const { return count_; }
    /// The host's own part, and the effect's, of each quantum's time at that rate, as shares.
    std::vector<double> hostShares(double sampleRate) const;
    std::vector<double> effectShares(double sampleRate) const;
    /// How many took longer, host and effect together, than they last.
    std::size_t overdueCount(double sampleRate) const;
    /// The size of the largest quantum, in frames.
    std::uint32_t largestQuantum() const;

  private:
    struct Quantum {
        std::int64_t whole;
        std::int64_t effect;
        std::uint32_t frames;
    };

    std::vector<Quantum> quanta_;
    std::atomic<std::size_t> count_ = 0;
};

}  // namespace orvalo::bench
