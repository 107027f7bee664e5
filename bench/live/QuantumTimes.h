#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvalo::bench {

/// The time of each quantum's render call, and of the effect's run() in it. The render thread adds
/// without allocating; other threads read when it has ended.
class QuantumTimes {
  public:
    explicit QuantumTimes(std::size_t capacity) : quanta_(capacity) {}

    /// Times in ns of wall-clock time. Ignored when the capacity is exhausted. Render thread.
    void add(std::int64_t whole, std::int64_t effect, std::uint32_t frames) noexcept {
        if (count_ < quanta_.size()) {
            quanta_[count_++] = {whole, effect, frames};
        }
    }

    std::size_t count() const { return count_; }
    /// The share of each quantum's duration that the host's part of its render call takes.
    std::vector<double> hostShares(double sampleRate) const;
    /// The same for the effect's run().
    std::vector<double> effectShares(double sampleRate) const;
    /// Quanta whose render call takes longer than they last.
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
