#include "bench/live/QuantumTimes.h"

#include <algorithm>

namespace orvalo::bench {

namespace {

double share(std::int64_t nanoseconds, std::uint32_t frames, double sampleRate) {
    return static_cast<double>(nanoseconds) * 1e-9 * sampleRate / frames;
}

}  // namespace

std::vector<double> QuantumTimes::hostShares(double sampleRate) const {
    std::vector<double> shares;
    for (std::size_t index = 0; index < count_; ++index) {
        const auto& quantum = quanta_[index];
        shares.push_back(share(quantum.whole - quantum.effect, quantum.frames, sampleRate));
    }
    return shares;
}

std::vector<double> QuantumTimes::effectShares(double sampleRate) const {
    std::vector<double> shares;
    for (std::size_t index = 0; index < count_; ++index) {
        shares.push_back(share(quanta_[index].effect, quanta_[index].frames, sampleRate));
    }
    return shares;
}

std::size_t QuantumTimes::overdueCount(double sampleRate) const {
    std::size_t overdue = 0;
    for (std::size_t index = 0; index < count_; ++index) {
        overdue += share(quanta_[index].whole, quanta_[index].frames, sampleRate) > 1.0 ? 1 : 0;
    }
    return overdue;
}

std::uint32_t QuantumTimes::largestQuantum() const {
    std::uint32_t largest = 0;
    for (std::size_t index = 0; index < count_; ++index) {
        largest = std::max(largest, quanta_[index].frames);
    }
    return largest;
}

}  // namespace orvalo::bench
