#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/audio/signal/AudioBlock.h"

namespace orvalo::testing {

/// A render thread's blocks of 128 frames in two channels, of a signal that never repeats a sample
/// nearby.
class QuantumFeed {
  public:
    static constexpr std::uint32_t kFrames = 128;
    static constexpr std::uint32_t kChannels = 2;

    /// One quantum as it went in and came out, by channel.
    using Block = std::vector<std::vector<float>>;
    struct Quantum {
        Block input;
        Block output;
    };
    using Render = std::function<void(const AudioBlock& input, const AudioBlock& output)>;

    explicit QuantumFeed(Render render) : render_(std::move(render)) {}

    /// Has the next quantum rendered.
    Quantum next();
    /// Frames so far.
    std::int64_t sampleTime() const { return sampleTime_; }

  private:
    const Render render_;
    std::int64_t sampleTime_ = 0;
};

}  // namespace orvalo::testing
