#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace orvalo::bench {

/// The Orvalo effect without a host: loaded with lilv, with default parameters and no MIDI input.
class BareEffect {
  public:
    static constexpr std::uint32_t blockFrames = 4096;

    /// Throws std::runtime_error when the stage has no effect.
    explicit BareEffect(double sampleRate);
    ~BareEffect();
    BareEffect(const BareEffect&) = delete;
    BareEffect& operator=(const BareEffect&) = delete;

    /// The input of run(): blockFrames samples of channel 0 or 1.
    std::vector<float>& input(std::size_t channel) { return inputs_.at(channel); }

    /// Processes blockFrames frames.
    void run();

  private:
    struct Instance;
    std::array<std::vector<float>, 2> inputs_;
    std::array<std::vector<float>, 2> outputs_;
    const std::unique_ptr<Instance> instance_;
};

}  // namespace orvalo::bench
