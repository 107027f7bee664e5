#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/audio/signal/AudioBlock.h"

namespace orvalo::testing {

/// Quanta of 128 frames in two channels, of a signal whose neighbouring samples all differ.
class QuantumFeed {
  public:
    static constexpr std::uint32_t kFrames = 128;
    static constexpr std::uint32_t kChannels = 2;

    /// The input and output of a quantum, by channel.
    using Block = std::vector<std::vector<float>>;
    struct Quantum {
        Block input;
        Block output;
    };
    using Render = std::function<void(const AudioBlock& input, const AudioBlock& output)>;

    explicit QuantumFeed(Render render) : render_(std::move(render)) {}

    /// Renders the next quantum.
    Quantum next();
    /// Frames rendered so far.
    std::int64_t sampleTime() const { return sampleTime_; }

  private:
    const Render render_;
    std::int64_t sampleTime_ = 0;
};

}  // namespace orvalo::testing
