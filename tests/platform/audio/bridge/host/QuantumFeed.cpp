#include "tests/platform/audio/bridge/host/QuantumFeed.h"

#include <array>

namespace orvalo::testing {

namespace {

/// Differs from all samples nearby.
float sampleAt(std::int64_t time, std::uint32_t channel) {
    constexpr std::int64_t kPeriod = 9973;
    return static_cast<float>((time * 7 + std::int64_t{channel} * 3571) % kPeriod) / 16384.0F -
           0.25F;
}

}  // namespace

QuantumFeed::Quantum QuantumFeed::next() {
    Quantum quantum{Block(kChannels, std::vector<float>(kFrames)),
                    Block(kChannels, std::vector<float>(kFrames, -7.0F))};
    std::array<float*, kChannels> inputs{};
    std::array<float*, kChannels> outputs{};
    for (std::uint32_t channel = 0; channel < kChannels; ++channel) {
        for (std::uint32_t frame = 0; frame < kFrames; ++frame) {
            quantum.input[channel][frame] = sampleAt(sampleTime_ + frame, channel);
        }
        inputs[channel] = quantum.input[channel].data();
        outputs[channel] = quantum.output[channel].data();
    }
    render_({inputs.data(), kChannels, kFrames}, {outputs.data(), kChannels, kFrames});
    sampleTime_ += kFrames;
    return quantum;
}

}  // namespace orvalo::testing
